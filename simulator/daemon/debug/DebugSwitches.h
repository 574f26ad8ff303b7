#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <values/Values.h>

#include "NumberStore.h"

namespace sim {

// What the service's debug printing has to switch: items, the QoS switch, debug modes. Each change
// is kept in the database before it counts.
class DebugSwitches {
public:
    using Item = values::MenuItem;
    struct Mode {
        const char* name;
        std::int32_t number;
        bool on;
    };

    // Takes what the database has kept. `extraItems` are added to the built-in ones.
    DebugSwitches(NumberStore& numbers, std::uint32_t extraItems);

    const std::vector<Item>& GetItems() const { return m_items; }
    // How many items are switched on.
    std::int32_t CountOn() const;
    bool IsQoSOn() const { return m_qos; }
    const std::vector<Mode>& GetModes() const { return m_modes; }

    // Null for one that is not there. Changed through the operations below alone.
    Item* FindItem(std::uint32_t id);
    Mode* FindMode(std::int32_t number);

    // False, and nothing changed, when the database would not take it.
    bool SetItem(Item& item, bool on);
    bool SetAllItems(bool on);
    bool SetQoS(bool on);
    bool SetMode(Mode& mode, bool on);
    // Several items by id, all or none; ids that are not there must have been sorted out.
    bool SetItems(const std::vector<std::pair<std::uint32_t, bool>>& states);

    // So many items beside the built-in ones; everything is off then.
    bool SetExtraItems(std::uint32_t count);
    bool Reset();

private:
    void SetDefaults();
    bool Keep(const std::string& key, bool on);

    NumberStore& m_numbers;
    std::uint32_t m_extraAtStart;
    std::uint32_t m_extraItems;
    std::vector<Item> m_items;
    std::vector<Mode> m_modes;
    bool m_qos = false;
};

} // namespace sim
