#include "DebugPrintControl.h"

#include <base/Number.h>
#include <nlohmann/json.hpp>

#include "Results.h"
#include "ValueJson.h"

namespace sim {

using nlohmann::json;

namespace {

constexpr std::uint32_t kMaxExtraItems = 1000000;

} // namespace

DebugPrintControl::DebugPrintControl(Context& context, std::uint32_t extraItems)
    : Interface(interfaces::kTable<interfaces::DebugPrintControlMethod>, Calls::ToInterface), m_context(context),
      m_switches(context.numbers, context.log, extraItems) {
    context.log.SetDebugSink([this](std::string_view line) {
        for (auto& [client, dialogue] : m_dialogues)
            dialogue.Add(line);
    });
    const Argument status = Out("status", kInt);
    Add(interfaces::DebugPrintControlMethod::Start, {status, Out("screen", kText)}, &DebugPrintControl::Start);
    Add(interfaces::DebugPrintControlMethod::Execute, {status, In("command", kText), Out("screen", kText)},
        &DebugPrintControl::Execute);
    Add(interfaces::DebugPrintControlMethod::Stop, {status}, &DebugPrintControl::Stop);
    Add(interfaces::DebugPrintControlMethod::Check, {status, Out("value", kInt)}, &DebugPrintControl::Check);
    Add(interfaces::DebugPrintControlMethod::GetMenuItems, {status, Out("items", kMenuItemList)},
        &DebugPrintControl::GetMenuItems);
    Add(interfaces::DebugPrintControlMethod::SetMenuItems, {status, In("items", kMenuItemList)},
        &DebugPrintControl::SetMenuItems);
    Add(interfaces::DebugPrintControlMethod::SetMenuItem, {status, In("item", kMenuItem)},
        &DebugPrintControl::SetMenuItem);
    Add(interfaces::DebugPrintControlMethod::SetQoSEnabled, {status, In("enable", kBool)},
        &DebugPrintControl::SetQoSEnabled);
    Add(interfaces::DebugPrintControlMethod::IsQoSEnabled, {Out("answer", kBool)}, &DebugPrintControl::IsQoSEnabled);
    Add(interfaces::DebugPrintControlMethod::SetDebugMode, {status, In("mode", kInt), In("enable", kBool)},
        &DebugPrintControl::SetDebugMode);
    Add(interfaces::DebugPrintControlMethod::IsDebugModeEnabled, {Out("answer", kBool), In("mode", kInt)},
        &DebugPrintControl::IsDebugModeEnabled);

    context.settings.Add("items", "NUMBER: debug menu items in addition to the built-in ones, all off",
                         [this, &context](const std::vector<std::string>& values, std::string& error) {
                             std::uint32_t count = 0;
                             if (values.size() != 1 || !ParseNumber(values[0], count) || count > kMaxExtraItems)
                                 return false;
                             if (m_switches.SetExtraItems(count))
                                 return true;
                             error = context.database.GetError();
                             return false;
                         });
}

DebugPrintControl::~DebugPrintControl() {
    m_context.log.SetDebugSink(nullptr);
}

void DebugPrintControl::Start(const Call& call, const ArgumentReader&, ReplyWriter& out) {
    m_context.changes.Mark("/debug/dialogues");
    DebugDialogue& dialogue = m_dialogues.try_emplace(call.client.GetNumber(), m_switches).first->second;
    out.Int(0, kDone);
    out.Text(1, dialogue.Open());
}

void DebugPrintControl::Execute(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
    const auto found = m_dialogues.find(call.client.GetNumber());
    if (found == m_dialogues.end() || !found->second.IsOpen())
        return out.Int(
            0, m_context.log.Refuse(kRefused, kOwnTag, "client %u has no dialogue open", call.client.GetNumber()));
    std::string screen;
    const std::uint64_t before = m_switches.GetRevision();
    const bool goesOn = found->second.Execute(in.Text(1), screen);
    m_context.changes.Mark("/debug/dialogues");
    if (m_switches.GetRevision() != before)
        SwitchesChanged();
    out.Int(0, goesOn ? kDone : 0);
    out.Text(2, screen);
}

void DebugPrintControl::Stop(const Call& call, const ArgumentReader&, ReplyWriter& out) {
    m_context.changes.Mark("/debug/dialogues");
    // A dialogue that the user has left must still be stopped: 0 only if there was none.
    out.Int(0, m_dialogues.erase(call.client.GetNumber()) > 0 ? kDone : 0);
}

// The number of items that are on.
void DebugPrintControl::Check(const Call&, const ArgumentReader&, ReplyWriter& out) {
    out.Int(0, kDone);
    out.Int(1, m_switches.CountOn());
}

void DebugPrintControl::GetMenuItems(const Call&, const ArgumentReader&, ReplyWriter& out) {
    out.Int(0, kDone);
    out.Value(1, m_switches.GetItems());
}

void DebugPrintControl::SetMenuItems(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    std::vector<std::pair<std::uint32_t, bool>> states;
    const auto items = in.Value<std::vector<values::MenuItem>>(1);
    if (items.size() > m_switches.GetItems().size())
        return out.Int(0, m_context.log.Refuse(kBadArgument, kOwnTag, "SetMenuItems refused: %zu items, there are %zu",
                                               items.size(), m_switches.GetItems().size()));
    for (const values::MenuItem& item : items) {
        if (m_switches.FindItem(item.id) == nullptr)
            return out.Int(0, m_context.log.Refuse(kUnknown, kOwnTag, "unknown debug menu item %u", item.id));
        states.emplace_back(item.id, item.on);
    }
    out.Int(0, Answer(m_switches.SetItems(states)));
}

void DebugPrintControl::SetMenuItem(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    const auto sent = in.Value<values::MenuItem>(1);
    DebugSwitches::Item* item = m_switches.FindItem(sent.id);
    if (item == nullptr)
        return out.Int(0, m_context.log.Refuse(kUnknown, kOwnTag, "unknown debug menu item %u", sent.id));
    // The name belongs to the daemon; the client's is ignored.
    out.Int(0, Answer(m_switches.SetItem(*item, sent.on)));
}

void DebugPrintControl::SetQoSEnabled(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    out.Int(0, Answer(m_switches.SetQoS(in.Bool(1))));
}

void DebugPrintControl::IsQoSEnabled(const Call&, const ArgumentReader&, ReplyWriter& out) {
    out.Bool(0, m_switches.IsQoSOn());
}

void DebugPrintControl::SetDebugMode(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    DebugSwitches::Mode* mode = m_switches.FindMode(in.Int(1));
    if (mode == nullptr)
        return out.Int(0, m_context.log.Refuse(kUnknown, kOwnTag, "unknown debug mode %d", in.Int(1)));
    out.Int(0, Answer(m_switches.SetMode(*mode, in.Bool(2))));
}

void DebugPrintControl::IsDebugModeEnabled(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    const DebugSwitches::Mode* mode = m_switches.FindMode(in.Int(1));
    if (mode == nullptr)
        m_context.log.Write(kOwnTag, "unknown debug mode %d", in.Int(1));
    out.Bool(0, mode != nullptr && mode->on);
}

// Each pipeline shows the QoS switch.
void DebugPrintControl::SwitchesChanged() {
    m_context.changes.Mark("/debug");
    m_context.changes.Mark("/pipelines");
}

std::int32_t DebugPrintControl::Answer(bool kept) {
    SwitchesChanged();
    if (kept)
        return kDone;
    return m_context.log.Refuse(kNotKept, kOwnTag, "the change could not be stored: %s",
                                m_context.database.GetError().c_str());
}

json DebugPrintControl::DescribeState() const {
    json state = DescribeAllButItems();
    state["items"] = ToJson(m_switches.GetItems());
    return state;
}

json DebugPrintControl::DescribeValue(const std::string& name) const {
    return name == "items" ? ToJson(m_switches.GetItems()) : DescribeAllButItems().value(name, json());
}

json DebugPrintControl::DescribeAllButItems() const {
    json modes = json::object();
    for (const DebugSwitches::Mode& mode : m_switches.GetModes())
        modes[mode.name] = mode.on;
    json dialogues = json::object();
    for (const auto& [client, dialogue] : m_dialogues)
        dialogues[std::to_string(client)] = {{"open", dialogue.IsOpen()}, {"screen", dialogue.GetScreenName()}};
    return {
        {"itemsOn", m_switches.CountOn()}, {"qos", m_switches.IsQoSOn()}, {"modes", modes}, {"dialogues", dialogues}};
}

bool DebugPrintControl::Reset() {
    return m_switches.Reset();
}

void DebugPrintControl::ReleaseClient(Client& client) {
    m_context.changes.Mark("/debug/dialogues");
    m_dialogues.erase(client.GetNumber());
}

} // namespace sim
