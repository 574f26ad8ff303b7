#include "CallText.h"

#include <cinttypes>
#include <cstdio>

std::string CallText::Text(bool value) {
    return value ? "true" : "false";
}

std::string CallText::Text(int value) {
    return std::to_string(value);
}

std::string CallText::Text(std::uint64_t serviceId) {
    char digits[24];
    static_cast<void>(std::snprintf(digits, sizeof digits, "0x%016" PRIx64, serviceId));
    return digits;
}

std::string CallText::Text(unsigned long long serviceId) {
    return Text(static_cast<std::uint64_t>(serviceId));
}

std::string CallText::Text(const std::string& value) {
    return "\"" + value + "\"";
}

std::string CallText::Text(const TSTvMode& value) {
    return "{" + Text(value.m_antennaMode) + ", " + Text(value.m_serviceMode) + "}";
}

std::string CallText::Text(const TSRectInfo& value) {
    return "{" + Text(value.m_x) + ", " + Text(value.m_y) + ", " + Text(value.m_width) + ", " + Text(value.m_height) +
           "}";
}

std::string CallText::Text(const std::vector<int>& values) {
    std::string list;
    for (const int value : values)
        list += (list.empty() ? "" : ", ") + Text(value);
    return "[" + list + "]";
}

std::string CallText::Text(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) {
    std::string list;
    for (const auto& [serviceId, code] : services)
        list += (list.empty() ? "" : ", ") + Text(serviceId) + ":" + std::to_string(code);
    return "[" + list + "]";
}
