#pragma once

#include <cstdint>
#include <string_view>

#include <values/Layout.h>
#include <wire/Tree.h>

namespace sim {

// Writes an operation's out arguments, by place, directly to the reply. Arguments that are not
// written stay unchanged in the client.
class ReplyWriter {
public:
    explicit ReplyWriter(wire::Buffer& buffer) : m_tree(buffer) {}

    void Int(std::int16_t place, std::int32_t value) { m_tree.PutValue(place, value); }
    void UInt(std::int16_t place, std::uint32_t value) { m_tree.PutValue(place, value); }
    void UShort(std::int16_t place, std::uint16_t value) { m_tree.PutValue(place, value); }
    void Number64(std::int16_t place, std::uint64_t value) { m_tree.PutValue(place, value); }
    void Bool(std::int16_t place, bool value) { m_tree.PutValue(place, static_cast<std::uint8_t>(value)); }
    void Text(std::int16_t place, std::string_view text) { m_tree.PutText(place, text); }
    template <class T> void Value(std::int16_t place, const T& value) { values::WriteArgument(m_tree, place, value); }
    // For anything but a value: BeginBranch(place) ... EndBranch.
    wire::TreeWriter& Tree() { return m_tree; }

private:
    wire::TreeWriter m_tree;
};

} // namespace sim
