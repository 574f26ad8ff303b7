#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include <wire/Tree.h>

// The encoding of a value in the tree, from one list of its fields (docs/wire-format.md,
// "Encodings"):
//
//   struct with kFields              branch, a field's tag is its place in the list
//   struct with kFields and kPacked  element of an array, its fields without gaps
//   number, enumeration, bool        value
//   std::string, std::string_view    text
//   container                        of numbers and packed structs an array, else a branch
//   std::optional                    what it holds, left out when it holds nothing
namespace values {

template <class T, class M> struct Field {
    const char* name; // in JSON
    M T::*member;
};
template <class T, class M> Field(const char*, M T::*) -> Field<T, M>;

// clang-format off
template <class T> concept Described = requires { T::kFields; };
template <class T> concept Packed = Described<T> && requires { T::kPacked; };
template <class T> concept Object = Described<T> && !Packed<T>;
template <class T> concept Scalar = std::is_arithmetic_v<T> || std::is_enum_v<T>;
template <class T> concept Text = std::same_as<T, std::string> || std::same_as<T, std::string_view>;
template <class T> concept Optional = requires(T value) { value.has_value(); };
template <class T> concept Array =
    !Text<T> && (Scalar<typename T::value_type> || Packed<typename T::value_type>);
// An enumeration whose enumerators 0, 1... have names; other values are invalid.
template <class T> concept Named = requires(T value) { NamesOf(value); };
// clang-format on

// Calls `function` with the tag and the description of each field.
template <Described T, class Function> constexpr void ForEachField(Function&& function) {
    const auto call = [&](const auto&... field) {
        std::int16_t tag = 0;
        (function(tag++, field), ...);
    };
    std::apply(call, T::kFields);
}

// Calls `function` with each number of an array's element.
template <class Element, class Function> constexpr void ForEachNumber(Element& element, Function&& function) {
    using T = std::remove_const_t<Element>;
    if constexpr (Packed<T>)
        ForEachField<T>([&](auto, const auto& field) { function(element.*field.member); });
    else
        function(element);
}

template <class Element> constexpr std::size_t SizeOfElement() {
    std::size_t size = 0;
    const Element element{};
    ForEachNumber(element, [&](const auto& number) { size += sizeof number; });
    return size;
}

template <class T> void Write(wire::TreeWriter& tree, std::int16_t tag, const T& value) {
    if constexpr (Optional<T>) {
        if (value)
            Write(tree, tag, *value);
    } else if constexpr (Scalar<T>) {
        tree.PutValue(tag, value);
    } else if constexpr (Text<T>) {
        tree.PutText(tag, value);
    } else if constexpr (!Array<T>) {
        const std::size_t branch = tree.BeginBranch(tag);
        if constexpr (Object<T>) {
            ForEachField<T>([&](std::int16_t place, const auto& field) { Write(tree, place, value.*field.member); });
        } else {
            // Tags restart after 16 bits: elements are identified by their order.
            std::uint16_t place = 0;
            for (const auto& element : value)
                Write(tree, static_cast<std::int16_t>(place++ & INT16_MAX), element);
        }
        tree.EndBranch(branch);
    } else {
        std::string bytes;
        for (const auto& element : value)
            ForEachNumber(element, [&](const auto& number) {
                bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
            });
        tree.PutLeaf(tag, wire::NodeKind::Array, bytes.data(), bytes.size());
    }
}

// What happens to a missing field.
enum class Missing { Kept, Refused };

template <class T> bool IsValid(const T& value) {
    if constexpr (Named<T>)
        return static_cast<std::size_t>(value) < NamesOf(value).size();
    return true;
}

// Reads the fields as far as they match. False if one does not; other nodes are ignored, and of
// several nodes with the same tag the first counts.
template <class T> bool Read(const wire::Node& node, T& value, Missing missing) {
    if constexpr (Optional<T>) {
        return Read(node, value.emplace(), missing);
    } else if constexpr (std::same_as<T, bool>) {
        // Any byte may be received, but a bool has only two values.
        std::uint8_t byte = value ? 1 : 0;
        const bool fits = node.Get(byte);
        value = byte != 0;
        return fits;
    } else if constexpr (Scalar<T>) {
        return node.Get(value) && IsValid(value);
    } else if constexpr (Text<T>) {
        std::string_view text;
        const bool fits = wire::GetText(node, text);
        wire::Node child;
        for (wire::NodeCursor cursor(node); !fits && node.IsBranch() && cursor.Next(child);) {
            if (child.tag == 1 && child.kind == wire::NodeKind::Array)
                text = child.GetBytes();
        }
        value = text;
        return fits;
    } else if constexpr (Object<T>) {
        bool fits = node.IsBranch();
        unsigned seen = 0;
        wire::Node child;
        for (wire::NodeCursor cursor(node); fits && cursor.Next(child);)
            ForEachField<T>([&](std::int16_t tag, const auto& field) {
                if (child.tag != tag || (seen >> tag & 1) != 0)
                    return;
                seen |= 1u << tag;
                fits = Read(child, value.*field.member, missing) && fits;
            });
        ForEachField<T>([&]<class Owner, class M>(std::int16_t tag, const Field<Owner, M>&) {
            if (!Optional<M> && missing == Missing::Refused && (seen >> tag & 1) == 0)
                fits = false;
        });
        return fits;
    } else if constexpr (Array<T>) {
        constexpr std::size_t kSize = SizeOfElement<typename T::value_type>();
        bool fits = node.kind == wire::NodeKind::Array && node.size % kSize == 0;
        value.resize(node.kind == wire::NodeKind::Array ? node.size / kSize : 0);
        const unsigned char* from = node.data;
        for (auto& element : value)
            ForEachNumber(element, [&](auto& number) {
                std::memcpy(&number, from, sizeof number);
                from += sizeof number;
                fits = IsValid(number) && fits;
            });
        return fits;
    } else {
        bool fits = node.IsBranch();
        value.clear();
        wire::Node child;
        for (wire::NodeCursor cursor(node); fits && cursor.Next(child);)
            fits = Read(child, value.emplace_back(), missing);
        return fits;
    }
}

// An argument of a call: like any value, but an array is enclosed in a branch, with tag 0.
template <class T> void WriteArgument(wire::TreeWriter& tree, std::int16_t place, const T& value) {
    if constexpr (Array<T>) {
        const std::size_t branch = tree.BeginBranch(place);
        Write(tree, 0, value);
        tree.EndBranch(branch);
    } else {
        Write(tree, place, value);
    }
}
template <class T> bool ReadArgument(const wire::Node& node, T& value, Missing missing) {
    if constexpr (Array<T>) {
        wire::NodeCursor cursor(node);
        wire::Node array;
        if (node.IsBranch() && !cursor.Next(array))
            return node.size == 0;
        return node.IsBranch() && array.tag == 0 && Read(array, value, missing) && cursor.IsAtEnd();
    } else {
        return Read(node, value, missing);
    }
}

} // namespace values
