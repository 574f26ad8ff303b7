#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <wire/Tree.h>

#include "Rect.h"

// The arguments of a call as a client sends them, in order.
class CallTree {
public:
    // Each call begins with its status.
    CallTree() { Out(std::int32_t{-1}); }

    template <class T> CallTree& Out(T value) { return Put(value, wire::Direction::Out); }
    template <class T> CallTree& In(T value) { return Put(value, wire::Direction::In); }
    CallTree& Text(std::string_view text) {
        m_tree.PutText(m_place++, text, wire::Direction::In);
        return *this;
    }
    CallTree& Rect(const sim::Rect& rect) {
        return Numbers({rect.x, rect.y, rect.width, rect.height});
    }
    CallTree& TvMode(std::int32_t antenna, std::int32_t serviceMode) {
        return Numbers({antenna, serviceMode});
    }
    CallTree& Ids(const std::vector<std::int32_t>& ids) {
        const std::size_t branch = m_tree.BeginBranch(m_place++, wire::Direction::In);
        m_tree.PutLeaf(0, wire::NodeKind::Array, ids.data(), ids.size() * sizeof(std::int32_t));
        m_tree.EndBranch(branch);
        return *this;
    }
    // An object whose content `write` puts into the tree.
    template <class F> CallTree& Object(F&& write) {
        const std::size_t branch = m_tree.BeginBranch(m_place++, wire::Direction::In);
        write(m_tree);
        m_tree.EndBranch(branch);
        return *this;
    }
    // An object that is only asked for.
    CallTree& OutObject() {
        m_tree.EndBranch(m_tree.BeginBranch(m_place++));
        return *this;
    }

    const wire::Buffer& GetBytes() const { return m_bytes; }

private:
    template <class T> CallTree& Put(const T& value, wire::Direction direction) {
        m_tree.PutValue(m_place++, value, direction);
        return *this;
    }
    CallTree& Numbers(const std::vector<std::int32_t>& numbers) {
        const std::size_t branch = m_tree.BeginBranch(m_place++, wire::Direction::In);
        std::int16_t tag = 0;
        for (const std::int32_t number : numbers)
            m_tree.PutValue(tag++, number);
        m_tree.EndBranch(branch);
        return *this;
    }

    wire::Buffer m_bytes;
    wire::TreeWriter m_tree{m_bytes};
    std::int16_t m_place = 0;
};
