#include "CallText.h"

#include <cinttypes>
#include <cstdio>

std::string CallText::text(bool value) {
    return value ? "true" : "false";
}

std::string CallText::text(int value) {
    return std::to_string(value);
}

std::string CallText::text(std::uint64_t serviceId) {
    char digits[24];
    static_cast<void>(std::snprintf(digits, sizeof digits, "0x%016" PRIx64, serviceId));
    return digits;
}

std::string CallText::text(unsigned long long serviceId) {
    return text(static_cast<std::uint64_t>(serviceId));
}

std::string CallText::text(const std::string& value) {
    return "\"" + value + "\"";
}

std::string CallText::text(const TSTvMode& value) {
    return "{" + text(value.m_antennaMode) + ", " + text(value.m_serviceMode) + "}";
}

std::string CallText::text(const TSRectInfo& value) {
    return "{" + text(value.m_x) + ", " + text(value.m_y) + ", " + text(value.m_width) + ", " +
           text(value.m_height) + "}";
}

std::string CallText::text(const std::vector<int>& values) {
    std::string list;
    for (const int value : values)
        list += (list.empty() ? "" : ", ") + text(value);
    return "[" + list + "]";
}

std::string CallText::text(const std::list<std::pair<std::uint64_t, std::uint32_t>>& services) {
    std::string list;
    for (const auto& [serviceId, code] : services)
        list += (list.empty() ? "" : ", ") + text(serviceId) + ":" + std::to_string(code);
    return "[" + list + "]";
}
