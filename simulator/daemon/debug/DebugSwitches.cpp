#include "DebugSwitches.h"

#include <algorithm>
#include <cinttypes>
#include <span>

#include <base/Number.h>
#include <base/Printed.h>

namespace sim {

namespace {

// In the database.
const char kPart[] = "debug";

// Ids have three digits, so that none of them is 99.
constexpr std::uint32_t kFirstId = 101;

// 24 characters: the length of a long name.
std::string MakeExtraName(std::uint32_t number) {
    return Printed("Extra debug switch %05u", number);
}

// The number at the end of "item/101"; 0, which is not an item's id, if there is none.
std::uint32_t ReadKeyNumber(std::string_view key) {
    std::uint32_t number = 0;
    ParseNumber(key.substr(key.find('/') + 1), number);
    return number;
}

// The stored value of an item or a mode; null if it no longer exists.
template <class T> void TakeKept(T* kept, bool on) {
    if (kept != nullptr)
        kept->on = on;
}

} // namespace

DebugSwitches::DebugSwitches(NumberStore& numbers, Log& log, std::uint32_t extraItems)
    : m_numbers(numbers), m_log(log), m_extraAtStart(extraItems), m_extraItems(extraItems) {
    SetDefaults();
    m_numbers.ForEach(kPart, [this](std::string_view key, std::int64_t on) {
        if (key == "qos")
            m_qos = on != 0;
        else if (key.starts_with("item/"))
            TakeKept(FindItem(ReadKeyNumber(key)), on != 0);
        else if (key.starts_with("mode/"))
            TakeKept(FindMode(static_cast<std::int32_t>(ReadKeyNumber(key))), on != 0);
    });
    Apply();
}

DebugSwitches::~DebugSwitches() {
    m_numbers.GetDatabase().SetTrace(nullptr);
}

void DebugSwitches::Apply() {
    DebugState state;
    for (std::size_t place = 0; place < kDebugItems; ++place)
        state.parts[place] = m_items[place].on;
    for (const Mode& mode : m_modes)
        state.parts[kDebugItems + static_cast<std::size_t>(mode.number)] = mode.on;
    state.qos = m_qos;

    const DebugState before = m_log.GetDebug();
    m_log.SetDebug(state);
    for (std::size_t part = 0; part < kDebugParts.size(); ++part) {
        if (state.parts[part] != before.parts[part])
            m_log.Write(kOwnTag, "debug menu: %s %s", kDebugParts[part].name, state.parts[part] ? "on" : "off");
    }
    if (state.qos != before.qos)
        m_log.Write("tvvideosink", "QoS %s", state.qos ? "on" : "off");
    Database::Trace trace;
    if (state.IsOn(Debug::DatabaseAccess))
        trace = [&log = m_log](const char* text, std::int64_t nanoseconds) {
            log.WriteDebug(Debug::DatabaseAccess, "%s: %" PRId64 " us", text, nanoseconds / 1000);
        };
    m_numbers.GetDatabase().SetTrace(std::move(trace));
}

void DebugSwitches::SetDefaults() {
    m_qos = false;
    m_modes.clear();
    m_items.clear();
    std::uint32_t id = kFirstId;
    for (std::size_t part = 0; part < kDebugItems; ++part)
        m_items.push_back({kDebugParts[part].name, false, id++});
    for (std::int32_t number = 0; const DebugPart& mode : std::span(kDebugParts).subspan(kDebugItems))
        m_modes.push_back({mode.name, number++, false});
    for (std::uint32_t number = 1; number <= m_extraItems; ++number)
        m_items.push_back({MakeExtraName(number), false, id++});
}

std::int32_t DebugSwitches::CountOn() const {
    return static_cast<std::int32_t>(
        std::count_if(m_items.begin(), m_items.end(), [](const Item& item) { return item.on; }));
}

// Ids have no gaps.
DebugSwitches::Item* DebugSwitches::FindItem(std::uint32_t id) {
    return id < kFirstId || id - kFirstId >= m_items.size() ? nullptr : &m_items[id - kFirstId];
}

DebugSwitches::Mode* DebugSwitches::FindMode(std::int32_t number) {
    const auto found =
        std::find_if(m_modes.begin(), m_modes.end(), [&](const Mode& mode) { return mode.number == number; });
    return found == m_modes.end() ? nullptr : &*found;
}

bool DebugSwitches::Keep(const std::string& key, bool on) {
    ++m_revision;
    return m_numbers.Put(kPart, key, on);
}

bool DebugSwitches::SetItem(Item& item, bool on) {
    if (!Keep("item/" + std::to_string(item.id), on))
        return false;
    item.on = on;
    Apply();
    return true;
}

bool DebugSwitches::SetItems(const std::vector<std::pair<std::uint32_t, bool>>& states) {
    Transaction together(m_numbers.GetDatabase());
    if (!together.IsOpen())
        return false;
    for (const auto& [id, on] : states) {
        if (FindItem(id)->on != on && !Keep("item/" + std::to_string(id), on))
            return false;
    }
    if (!together.Commit())
        return false;
    for (const auto& [id, on] : states)
        FindItem(id)->on = on;
    Apply();
    return true;
}

bool DebugSwitches::SetAllItems(bool on) {
    std::vector<std::pair<std::uint32_t, bool>> states;
    for (const Item& item : m_items)
        states.emplace_back(item.id, on);
    return SetItems(states);
}

bool DebugSwitches::SetQoS(bool on) {
    if (!Keep("qos", on))
        return false;
    m_qos = on;
    Apply();
    return true;
}

bool DebugSwitches::SetMode(Mode& mode, bool on) {
    if (!Keep("mode/" + std::to_string(mode.number), on))
        return false;
    mode.on = on;
    Apply();
    return true;
}

bool DebugSwitches::SetExtraItems(std::uint32_t count) {
    if (!m_numbers.Clear(kPart))
        return false;
    m_extraItems = count;
    SetDefaults();
    Apply();
    return true;
}

bool DebugSwitches::Reset() {
    return SetExtraItems(m_extraAtStart);
}

} // namespace sim
