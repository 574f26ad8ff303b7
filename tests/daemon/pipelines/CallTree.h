#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <values/Values.h>
#include <wire/Tree.h>

#include "LineUp.h"
#include "Rect.h"

// An out argument, with its value before the call; and one that is an object.
template <class T> struct Out { T before; };
struct OutObject {};

using Ids = std::vector<std::int32_t>;
using Services = std::vector<std::uint64_t>;

// The arguments of a call as a client sends them, in order.
class CallTree {
public:
    template <class... Arguments> explicit CallTree(const Arguments&... arguments) {
        Add(Out<std::int32_t>{-1}); // each call begins with its status
        (Add(arguments), ...);
    }

    const wire::Buffer& GetBytes() const { return m_bytes; }

private:
    static constexpr auto kIn = wire::Direction::In;

    template <class T> void Add(const Out<T>& argument) { m_tree.PutValue(m_place++, argument.before); }
    void Add(OutObject) { m_tree.EndBranch(m_tree.BeginBranch(m_place++)); }
    void Add(std::int32_t value) { m_tree.PutValue(m_place++, value, kIn); }
    void Add(std::uint32_t value) { m_tree.PutValue(m_place++, value, kIn); }
    void Add(std::uint64_t value) { m_tree.PutValue(m_place++, value, kIn); }
    void Add(bool value) { m_tree.PutValue(m_place++, std::uint8_t{value}, kIn); }
    void Add(const char* text) { m_tree.PutText(m_place++, text, kIn); }
    void Add(const std::string& text) { m_tree.PutText(m_place++, text, kIn); }
    void Add(const sim::Rect& rect) { AddNumbers({rect.x, rect.y, rect.width, rect.height}); }
    void Add(const sim::TvMode& mode) { AddNumbers({mode.antenna, mode.serviceMode}); }
    void Add(const Ids& ids) {
        AddObject([&] { PutArray(0, ids); });
    }
    void Add(const Services& services) {
        std::vector<std::uint32_t> packed; // 64 bits of id, lower half first, and a code
        for (const std::uint64_t service : services)
            packed.insert(packed.end(),
                          {static_cast<std::uint32_t>(service), static_cast<std::uint32_t>(service >> 32), 5u});
        AddObject([&] { PutArray(0, packed); });
    }
    void Add(const values::Criteria& criteria) {
        AddObject([&] {
            PutArray(0, criteria.conditions);
            PutArray(1, criteria.fetched);
        });
    }

    template <class Write> void AddObject(Write write) {
        const std::size_t branch = m_tree.BeginBranch(m_place++, kIn);
        write();
        m_tree.EndBranch(branch);
    }
    void AddNumbers(const Ids& numbers) {
        AddObject([&] {
            for (std::int16_t tag = 0; const std::int32_t number : numbers)
                m_tree.PutValue(tag++, number);
        });
    }
    template <class T> void PutArray(std::int16_t tag, const std::vector<T>& values) {
        m_tree.PutLeaf(tag, wire::NodeKind::Array, values.data(), values.size() * sizeof(T));
    }

    wire::Buffer m_bytes;
    wire::TreeWriter m_tree{m_bytes};
    std::int16_t m_place = 0;
};
