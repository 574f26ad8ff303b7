#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <base/Log.h>
#include <values/Values.h>

#include "NumberStore.h"

namespace sim {

// The switches of the debug menu: items, the QoS switch, debug modes. Each change is stored in the
// database before it takes effect. The log knows what is on; the extra items switch nothing.
class DebugSwitches {
public:
    using Item = values::MenuItem;
    struct Mode {
        const char* name;
        std::int32_t number;
        bool on;
    };

    // Loads the stored switches. `extraItems` are added to the built-in ones.
    DebugSwitches(NumberStore& numbers, Log& log, std::uint32_t extraItems);
    ~DebugSwitches();
    DebugSwitches(const DebugSwitches&) = delete;
    DebugSwitches& operator=(const DebugSwitches&) = delete;

    const std::vector<Item>& GetItems() const { return m_items; }
    // The number of items that are on.
    std::int32_t CountOn() const;
    bool IsQoSOn() const { return m_qos; }
    const std::vector<Mode>& GetModes() const { return m_modes; }
    // Differs after a change of a switch.
    std::uint64_t GetRevision() const { return m_revision; }

    // Null for an unknown one. To be changed only with the operations below.
    Item* FindItem(std::uint32_t id);
    Mode* FindMode(std::int32_t number);

    // False, without a change, if the database cannot be written.
    bool SetItem(Item& item, bool on);
    bool SetAllItems(bool on);
    bool SetQoS(bool on);
    bool SetMode(Mode& mode, bool on);
    // Several items by id, all or none; all ids must exist.
    bool SetItems(const std::vector<std::pair<std::uint32_t, bool>>& states);

    // Sets the number of extra items; afterwards everything is off.
    bool SetExtraItems(std::uint32_t count);
    bool Reset();

private:
    void SetDefaults();
    bool Keep(const std::string& key, bool on);
    // Tells the log what is on now, and writes what has changed.
    void Apply();

    NumberStore& m_numbers;
    Log& m_log;
    std::uint32_t m_extraAtStart;
    std::uint32_t m_extraItems;
    std::vector<Item> m_items;
    std::vector<Mode> m_modes;
    bool m_qos = false;
    std::uint64_t m_revision = 0;
};

} // namespace sim
