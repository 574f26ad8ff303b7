#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <norvex/client/RectInfo.h>
#include <norvex/client/TvMode.h>

// The text of a call recorded by the fakes: its name and its arguments in order, "MuteVideo(5)".
// Numbers are decimal, service ids 16 hexadecimal digits, texts quoted, records and lists in
// brackets.
namespace CallText {

std::string Text(bool value);
std::string Text(int value);
std::string Text(std::uint64_t serviceId);
std::string Text(unsigned long long serviceId);
std::string Text(const std::string& value);
std::string Text(const char* value) = delete;
std::string Text(const TSTvMode& value);
std::string Text(const TSRectInfo& value);
std::string Text(const std::vector<int>& values);
std::string Text(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services);

template <typename Number>
requires std::is_enum_v<Number> std::string Text(Number value) {
    return Text(static_cast<int>(value));
}

template <typename... Arguments> std::string Call(const std::string& name, const Arguments&... arguments) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + Text(arguments)), ...);
    return name + "(" + list + ")";
}

} // namespace CallText
