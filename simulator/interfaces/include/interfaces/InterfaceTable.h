#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace interfaces {

// The prefix of every interface's name. Users may omit it.
inline constexpr std::string_view kNamePrefix = "com.holvi.";

// The names of an interface and its operations, in the order of their numbers.
struct InterfaceTable {
    static constexpr std::size_t kMaxMethods = 16;

    std::string_view name; // "com.holvi.IAVControl"
    std::array<std::string_view, kMaxMethods> methods{};
    std::size_t methodCount = 0;

    constexpr std::string_view GetName(std::int16_t method) const {
        return methods.at(static_cast<std::size_t>(method));
    }
};

// Splits the list of enumerators: "SetSource, SetSource_Service" are two operations called
// SetSource.
constexpr InterfaceTable MakeInterfaceTable(std::string_view name, std::string_view enumerators) {
    InterfaceTable table{name};
    while (!enumerators.empty()) {
        const std::size_t end = enumerators.find(',');
        std::string_view method = enumerators.substr(0, end);
        method.remove_prefix(method.find_first_not_of(' '));
        table.methods.at(table.methodCount++) = method.substr(0, method.find('_'));
        enumerators.remove_prefix(end == std::string_view::npos ? enumerators.size() : end + 1);
    }
    return table;
}

// The table of an enumeration of operations; see NORVEX_INTERFACE.
template <class Method> inline constexpr InterfaceTable kTable = GetInterfaceTable(Method{});

template <class Method> constexpr std::string_view GetMethodName(Method method) {
    return kTable<Method>.GetName(static_cast<std::int16_t>(method));
}

} // namespace interfaces

// Declares an interface: its operations as an enumeration, and its table.
#define NORVEX_INTERFACE(interface, ...)                                                                               \
    enum class interface##Method : std::int16_t{__VA_ARGS__};                                                          \
    constexpr ::interfaces::InterfaceTable GetInterfaceTable(interface##Method) {                                      \
        return ::interfaces::MakeInterfaceTable("com.holvi.I" #interface, #__VA_ARGS__);                               \
    }
