#pragma once

#include <cstdint>
#include <map>

#include "Component.h"
#include "Context.h"
#include "DebugDialogue.h"
#include "DebugSwitches.h"
#include "Interface.h"

namespace sim {

// IDebugPrintControl: the TV's debug menu. Each client has its own dialogue; the switches
// are shared.
class DebugPrintControl : public Interface, public Component {
public:
    // `extraItems`: debug menu items in addition to the built-in ones.
    DebugPrintControl(Context& context, std::uint32_t extraItems);
    ~DebugPrintControl() override;

    const char* GetStateName() const override { return "debug"; }
    nlohmann::json DescribeState() const override;
    nlohmann::json DescribeValue(const std::string& name) const override;
    bool Reset() override;
    void ReleaseClient(Client& client) override;

private:
    // There may be a million items.
    nlohmann::json DescribeAllButItems() const;
    void SwitchesChanged();
    void Start(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void Execute(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void Stop(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void Check(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void GetMenuItems(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetMenuItems(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetMenuItem(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetQoSEnabled(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void IsQoSEnabled(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetDebugMode(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void IsDebugModeEnabled(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    // The result of a setter.
    std::int32_t Answer(bool kept);

    Context& m_context;
    DebugSwitches m_switches;
    std::map<std::uint32_t, DebugDialogue> m_dialogues; // by client number
};

} // namespace sim
