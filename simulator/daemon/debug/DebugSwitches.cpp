#include "DebugSwitches.h"

#include <algorithm>
#include <iterator>

#include <base/Number.h>
#include <base/Printed.h>

namespace sim {

namespace {

// In the database.
const char kPart[] = "debug";

// Names fit the column in which consoles show them (17 characters). Ids have three digits, so that
// none of them is 99.
constexpr std::uint32_t kFirstId = 101;
const char* const kItemNames[] = {
    "Tuner lock",    "Section filter", "Channel change",  "Service list", "Signal queue",  "Video decoder",
    "Audio decoder", "Captions",       "Zoom windows",    "Crop video",   "Scan progress", "Preparation",
    "HDMI input",    "Sessions",       "Database access", "Memory use",
};

const DebugSwitches::Mode kModes[] = {
    {"trace", 0, false},
    {"timing", 1, false},
    {"frames", 2, false},
    {"dry-run", 3, false},
};

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

DebugSwitches::DebugSwitches(NumberStore& numbers, std::uint32_t extraItems)
    : m_numbers(numbers), m_extraAtStart(extraItems), m_extraItems(extraItems) {
    SetDefaults();
    m_numbers.ForEach(kPart, [this](std::string_view key, std::int64_t on) {
        if (key == "qos")
            m_qos = on != 0;
        else if (key.starts_with("item/"))
            TakeKept(FindItem(ReadKeyNumber(key)), on != 0);
        else if (key.starts_with("mode/"))
            TakeKept(FindMode(static_cast<std::int32_t>(ReadKeyNumber(key))), on != 0);
    });
}

void DebugSwitches::SetDefaults() {
    m_qos = false;
    m_modes.assign(std::begin(kModes), std::end(kModes));
    m_items.clear();
    std::uint32_t id = kFirstId;
    for (const char* name : kItemNames)
        m_items.push_back({name, false, id++});
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
    return m_numbers.Put(kPart, key, on);
}

bool DebugSwitches::SetItem(Item& item, bool on) {
    if (!Keep("item/" + std::to_string(item.id), on))
        return false;
    item.on = on;
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
    return true;
}

bool DebugSwitches::SetMode(Mode& mode, bool on) {
    if (!Keep("mode/" + std::to_string(mode.number), on))
        return false;
    mode.on = on;
    return true;
}

bool DebugSwitches::SetExtraItems(std::uint32_t count) {
    if (!m_numbers.Clear(kPart))
        return false;
    m_extraItems = count;
    SetDefaults();
    return true;
}

bool DebugSwitches::Reset() {
    return SetExtraItems(m_extraAtStart);
}

} // namespace sim
