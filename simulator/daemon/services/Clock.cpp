#include "Clock.h"

#include <ctime>
#include <memory>

#include <glib.h>

#include <base/Number.h>
#include <nlohmann/json.hpp>

namespace sim {

using nlohmann::json;

namespace {

// The end of the year 9999, the limit of GLib's dates.
constexpr std::int64_t kLast = 253402300799;

struct DateDeleter {
    void operator()(GDateTime* date) const { g_date_time_unref(date); }
};
using Date = std::unique_ptr<GDateTime, DateDeleter>;

// "2026-03-01T20:15:00Z"; without a zone it is UTC. Or seconds since 1970.
bool ParseTime(const std::string& text, std::int64_t& seconds) {
    if (ParseNumber(text, seconds))
        return seconds >= 0 && seconds <= kLast;
    const std::unique_ptr<GTimeZone, decltype(&g_time_zone_unref)> utc(g_time_zone_new_utc(), g_time_zone_unref);
    const Date date(g_date_time_new_from_iso8601(text.c_str(), utc.get()));
    if (date == nullptr)
        return false;
    seconds = g_date_time_to_unix(date.get());
    return seconds >= 0;
}

std::string ToText(std::int64_t seconds) {
    const Date date(g_date_time_new_from_unix_utc(seconds));
    if (date == nullptr)
        return std::to_string(seconds);
    const std::unique_ptr<char, decltype(&g_free)> text(g_date_time_format(date.get(), "%Y-%m-%dT%H:%M:%SZ"), g_free);
    return text.get();
}

} // namespace

Clock::Clock(Context& context) : m_context(context) {
    context.settings.Add(
        "clock",
        "TIME|machine: the TV's time, such as 2026-03-01T20:15:00Z or seconds since 1970; or the machine's time again",
        [this](const auto& values, auto& error) { return Set(values, error); });
}

std::int64_t Clock::Now() const {
    return std::time(nullptr) + m_offset;
}

bool Clock::Set(const std::vector<std::string>& values, std::string&) {
    std::int64_t seconds = 0;
    if (values.size() != 1)
        return false;
    if (values[0] == "machine")
        m_offset = 0;
    else if (ParseTime(values[0], seconds))
        m_offset = seconds - std::time(nullptr);
    else
        return false;
    m_context.log.Write(kOwnTag, "the time is %s", ToText(Now()).c_str());
    return true;
}

json Clock::DescribeState() const {
    return {{"now", ToText(Now())}, {"set", m_offset != 0}};
}

} // namespace sim
