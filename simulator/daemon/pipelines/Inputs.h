#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Component.h"
#include "Context.h"
#include "LineUp.h"

namespace sim {

// The TV's environment, which only norvex-simctl changes: the antennas' signals, captions that
// override the service's, and what is plugged into the HDMI inputs.
class Inputs : public Component {
public:
    explicit Inputs(Context& context);

    // Called after each change.
    void SetListener(std::function<void()> listener) { m_listener = std::move(listener); }

    bool HasSignal(const Transponder& transponder) const;
    // Whether there are captions, for a service with or without them.
    bool HasCaptions(bool ofService) const;
    static bool IsHdmi(std::int32_t source);
    bool IsPlugged(std::int32_t hdmiSource) const { return m_state.plugged.at(hdmiSource); }

    const char* GetStateName() const override { return "inputs"; }
    nlohmann::json DescribeState() const override;
    bool Reset() override;

private:
    enum class Captions { OfService, On, Off };
    using Values = std::vector<std::string>;
    struct State {
        State();

        std::set<Transponder> cut;
        Captions captions = Captions::OfService;
        std::map<std::int32_t, bool> plugged; // all of them
    };

    bool SetTuner(const Values& values, std::string& error);
    bool SetCaptions(const Values& values);
    bool SetHdmi(const Values& values);
    void Tell();

    Context& m_context;
    std::function<void()> m_listener;
    State m_state;
};

} // namespace sim
