#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <norvex/client/RectInfo.h>
#include <norvex/client/TvMode.h>

// How the fakes write down a call: its name and its arguments in order, "MuteVideo(5)". Numbers are
// decimal, service ids 16 hexadecimal digits, texts quoted, records and lists in brackets.
namespace CallText {

std::string text(bool value);
std::string text(int value);
std::string text(std::uint64_t serviceId);
std::string text(unsigned long long serviceId);
std::string text(const std::string& value);
std::string text(const char* value) = delete;
std::string text(const TSTvMode& value);
std::string text(const TSRectInfo& value);
std::string text(const std::vector<int>& values);
std::string text(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services);

template <typename Number>
requires std::is_enum_v<Number> std::string text(Number value) {
    return text(static_cast<int>(value));
}

template <typename... Arguments>
std::string call(const std::string& name, const Arguments&... arguments) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + text(arguments)), ...);
    return name + "(" + list + ")";
}

} // namespace CallText
