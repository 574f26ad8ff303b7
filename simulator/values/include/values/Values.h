#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <values/Layout.h>

// The values of calls and replies, as plain numbers and texts. Add new fields at the end of their
// list. Unsigned numbers of 64 bits are service ids.
namespace values {

// In pixels.
struct Rect {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const Rect&) const = default;
    static constexpr std::tuple kFields{Field{"x", &Rect::x}, Field{"y", &Rect::y}, Field{"width", &Rect::width},
                                        Field{"height", &Rect::height}};
};

// Antenna mode and service mode, numbered as by clients.
struct TvMode {
    std::int32_t antenna = 0;
    std::int32_t serviceMode = 0;

    auto operator<=>(const TvMode&) const = default;
    static constexpr std::tuple kFields{Field{"antenna", &TvMode::antenna}, Field{"serviceMode", &TvMode::serviceMode}};
};

// A switch of a debug menu.
struct MenuItem {
    std::string name;
    bool on = false;
    std::uint32_t id = 0;

    static constexpr std::tuple kFields{Field{"name", &MenuItem::name}, Field{"state", &MenuItem::on},
                                        Field{"id", &MenuItem::id}};
};

enum class Comparison : std::int32_t { Equal = 0, Different = 1 };
constexpr std::array<const char*, 2> NamesOf(Comparison) {
    return {"equal", "different"};
}

// A service's field equals a value, or differs from it.
struct Condition {
    Comparison comparison = Comparison::Equal;
    std::int32_t field = 0;
    std::int32_t value = 0;

    static constexpr bool kPacked = true;
    static constexpr std::tuple kFields{Field{"is", &Condition::comparison}, Field{"field", &Condition::field},
                                        Field{"value", &Condition::value}};
};

// A client's query: conditions that must all hold, and the fields of the returned records.
struct Criteria {
    std::vector<Condition> conditions;
    std::vector<std::int32_t> fetched;

    static constexpr std::tuple kFields{Field{"where", &Criteria::conditions}, Field{"fetch", &Criteria::fetched}};
};

struct ServiceCode {
    std::uint64_t service = 0;
    std::uint32_t code = 0;

    static constexpr bool kPacked = true;
    static constexpr std::tuple kFields{Field{"service", &ServiceCode::service}, Field{"code", &ServiceCode::code}};
};

struct Programme {
    std::int64_t start = 0;     // seconds since 1970
    std::uint32_t duration = 0; // seconds
    std::optional<std::u16string> title;

    static constexpr std::tuple kFields{Field{"start", &Programme::start}, Field{"duration", &Programme::duration},
                                        Field{"title", &Programme::title}};
};

// Time of the last event of a kind.
struct EventTime {
    std::int32_t event = 0;
    std::int64_t milliseconds = 0; // since the TV service's start

    static constexpr bool kPacked = true;
    static constexpr std::tuple kFields{Field{"event", &EventTime::event},
                                        Field{"milliseconds", &EventTime::milliseconds}};
};

struct PipelineEvents {
    std::int32_t profile = 0;
    std::uint16_t screen = 0;
    std::vector<EventTime> events;

    static constexpr std::tuple kFields{Field{"profile", &PipelineEvents::profile},
                                        Field{"screen", &PipelineEvents::screen},
                                        Field{"events", &PipelineEvents::events}};
};

// A line about a pipeline.
struct StatusEntry {
    std::int32_t profile = 0;
    std::uint16_t screen = 0;
    std::string text;

    static constexpr std::tuple kFields{Field{"profile", &StatusEntry::profile}, Field{"screen", &StatusEntry::screen},
                                        Field{"text", &StatusEntry::text}};
};

// A snapshot of all pipelines.
struct Status {
    std::vector<PipelineEvents> pipelines;
    std::vector<StatusEntry> entries;

    static constexpr std::tuple kFields{Field{"pipelines", &Status::pipelines}, Field{"entries", &Status::entries}};
};

} // namespace values
