#include "Inputs.h"

#include <algorithm>
#include <array>

#include <base/Number.h>
#include <nlohmann/json.hpp>
#include <norvex/client/Source.h>

namespace sim {

using nlohmann::json;

namespace {

constexpr std::size_t kMaxCuts = 4096;

// HDMI 1 to 8.
constexpr std::array<std::int32_t, 8> kHdmiSources{SOURCE_HDMI1, SOURCE_HDMI2, SOURCE_HDMI3, SOURCE_HDMI4,
                                                   SOURCE_HDMI5, SOURCE_HDMI6, SOURCE_HDMI7, SOURCE_HDMI8};
constexpr std::array<const char*, 3> kCaptionNames{"service", "on", "off"};

// "hdmi1" to "hdmi8", or the source's number; below 0 for anything else.
std::int32_t ParseHdmi(const std::string& word) {
    std::int32_t source = -1;
    if (ParseNumber(word, source))
        return Inputs::IsHdmi(source) ? source : -1;
    for (std::size_t place = 0; place < kHdmiSources.size(); ++place) {
        if (word == "hdmi" + std::to_string(place + 1))
            return kHdmiSources[place];
    }
    return -1;
}

// Whether the text is one of two, and which.
bool ParseEither(const std::string& word, const char* yes, const char* no, bool& is) {
    is = word == yes;
    return is || word == no;
}

} // namespace

Inputs::Inputs(Context& context) : m_context(context) {
    context.settings.Add("tuner", "air|cable|satellite[/FREQUENCY] on|off: the signal of an antenna or a transponder",
                         [this](const auto& values, auto& error) { return SetTuner(values, error); });
    context.settings.Add("captions", "on|off|service: captions on or off, or as the service has them",
                         [this](const auto& values, auto&) { return SetCaptions(values); });
    context.settings.Add("hdmi", "hdmi1..hdmi8|SOURCE plugged|unplugged: whether something is plugged in",
                         [this](const auto& values, auto&) { return SetHdmi(values); });
}

Inputs::State::State() {
    for (const std::int32_t source : kHdmiSources)
        plugged[source] = true;
}

bool Inputs::HasSignal(const Transponder& transponder) const {
    return !m_state.cut.contains({transponder.antenna, 0}) && !m_state.cut.contains(transponder);
}

bool Inputs::HasCaptions(bool ofService) const {
    return m_state.captions == Captions::OfService ? ofService : m_state.captions == Captions::On;
}

bool Inputs::IsHdmi(std::int32_t source) {
    return std::find(kHdmiSources.begin(), kHdmiSources.end(), source) != kHdmiSources.end();
}

bool Inputs::SetTuner(const Values& values, std::string& error) {
    bool on = false;
    if (values.size() != 2 || !ParseEither(values[1], "on", "off", on))
        return false;
    const auto transponder = ParseTransponder(values[0]);
    if (!transponder)
        return false;
    if (on) {
        m_state.cut.erase(*transponder);
    } else if (m_state.cut.size() < kMaxCuts) {
        m_state.cut.insert(*transponder);
    } else {
        error = "too many transponders are off";
        return false;
    }
    m_context.log.Write(kTunerTag, "signal of %s: %s", values[0].c_str(), on ? "on" : "off");
    Tell();
    return true;
}

bool Inputs::SetCaptions(const Values& values) {
    if (values.size() != 1)
        return false;
    const auto* const found = std::find(kCaptionNames.begin(), kCaptionNames.end(), values[0]);
    if (found == kCaptionNames.end())
        return false;
    m_state.captions = static_cast<Captions>(found - kCaptionNames.begin());
    m_context.log.Write("tvdemuxer", "captions: %s", *found);
    Tell();
    return true;
}

bool Inputs::SetHdmi(const Values& values) {
    bool plugged = false;
    if (values.size() != 2 || !ParseEither(values[1], "plugged", "unplugged", plugged))
        return false;
    const std::int32_t source = ParseHdmi(values[0]);
    if (source < 0)
        return false;
    m_state.plugged[source] = plugged;
    m_context.log.Write("extvideosrc", "source %d %s", source, values[1].c_str());
    m_context.log.WriteDebug(
        Debug::HdmiInput, "%td inputs are plugged",
        std::count_if(m_state.plugged.begin(), m_state.plugged.end(), [](const auto& input) { return input.second; }));
    Tell();
    return true;
}

void Inputs::Tell() {
    if (m_listener)
        m_listener();
}

json Inputs::DescribeState() const {
    json cut = json::array();
    for (const Transponder& transponder : m_state.cut)
        cut.push_back(transponder.ToText());
    json hdmi = json::object();
    for (const auto& [source, plugged] : m_state.plugged)
        hdmi[std::to_string(source)] = plugged ? "plugged" : "unplugged";
    return {{"cut", cut}, {"captions", kCaptionNames.at(static_cast<std::size_t>(m_state.captions))}, {"hdmi", hdmi}};
}

bool Inputs::Reset() {
    m_state = {};
    return true;
}

} // namespace sim
