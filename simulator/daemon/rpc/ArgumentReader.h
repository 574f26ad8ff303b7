#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include <values/Layout.h>
#include <wire/Tree.h>

#include "ArgumentType.h"

namespace sim {

// An argument in the list of an operation.
struct Argument {
    const char* name;
    wire::Direction direction; // that it travels in
    const ArgumentType* type;
    bool isRead; // by the operation
};

inline Argument Out(const char* name, const ArgumentType& type) {
    return {name, wire::Direction::Out, &type, false};
}
inline Argument In(const char* name, const ArgumentType& type) {
    return {name, wire::Direction::In, &type, true};
}
// Clients hand it by pointer, so that it travels as if it could come back; it is only read.
inline Argument InByPointer(const char* name, const ArgumentType& type) {
    return {name, wire::Direction::Out, &type, true};
}

// The arguments of one call by place. They are checked against the operation's list before the
// operation runs: a reader of a valid call needs no checks. Views of the message.
class ArgumentReader {
public:
    static constexpr std::size_t kMaxArguments = 16;

    ArgumentReader(std::span<const Argument> arguments, const void* tree, std::size_t treeSize);

    bool IsValid() const { return m_fault == nullptr; }
    // What is malformed, for a log line: "argument 1 (command: text) has the wrong type".
    std::string DescribeFault() const;

    std::int32_t Int(std::size_t place) const { return Get<std::int32_t>(place); }
    std::uint32_t UInt(std::size_t place) const { return Get<std::uint32_t>(place); }
    std::uint16_t UShort(std::size_t place) const { return Get<std::uint16_t>(place); }
    std::uint64_t Number64(std::size_t place) const { return Get<std::uint64_t>(place); }
    bool Bool(std::size_t place) const { return Get<std::uint8_t>(place) != 0; }
    std::string_view Text(std::size_t place) const;
    // A value of an argument's type.
    template <class T> T Value(std::size_t place) const {
        T value{};
        values::ReadArgument(At(place), value, values::Missing::Kept);
        return value;
    }
    // An argument of any type.
    const wire::Node& At(std::size_t place) const { return m_nodes.at(place); }

private:
    template <class T> T Get(std::size_t place) const {
        T value{};
        At(place).Get(value);
        return value;
    }
    const char* Check(std::size_t place) const;

    std::span<const Argument> m_arguments;
    std::array<wire::Node, kMaxArguments> m_nodes;
    const char* m_fault = nullptr;
    std::size_t m_faultyPlace = 0;
};

} // namespace sim
