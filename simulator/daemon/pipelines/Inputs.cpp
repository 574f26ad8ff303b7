#include "Inputs.h"

#include <algorithm>
#include <array>

#include <nlohmann/json.hpp>
#include <norvex/client/Source.h>

#include <base/Number.h>

namespace sim {

using nlohmann::json;

namespace {

constexpr std::size_t kMaxCuts = 4096;

// HDMI 1 to 8.
constexpr std::array<std::int32_t, 8> kHdmiSources{SOURCE_HDMI1, SOURCE_HDMI2, SOURCE_HDMI3,
                                                   SOURCE_HDMI4, SOURCE_HDMI5, SOURCE_HDMI6,
                                                   SOURCE_HDMI7, SOURCE_HDMI8};
constexpr std::array<const char*, 3> kCaptionWords{"service", "on", "off"};

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

// Whether `word` is one of two, and which.
bool ParseEither(const std::string& word, const char* yes, const char* no, bool& is) {
    is = word == yes;
    return is || word == no;
}

} // namespace

Inputs::Inputs(Context& context) : m_context(context) {
    SetDefaults();
    context.settings.Add(
        "tuner", "air|cable|satellite[/FREQUENCY] on|off: the signal of a transponder, or antenna",
        [this](const auto& words, auto& error) { return SetTuner(words, error); });
    context.settings.Add("captions",
                         "on|off|service: whether captions come, or as the service has them",
                         [this](const auto& words, auto&) { return SetCaptions(words); });
    context.settings.Add("hdmi", "hdmi1..hdmi8|SOURCE plugged|unplugged: what is at an input",
                         [this](const auto& words, auto&) { return SetHdmi(words); });
}

void Inputs::SetDefaults() {
    m_cut.clear();
    m_captions = Captions::OfService;
    for (const std::int32_t source : kHdmiSources)
        m_plugged[source] = true;
}

bool Inputs::HasSignal(const Transponder& transponder) const {
    return !m_cut.contains({transponder.antenna, 0}) && !m_cut.contains(transponder);
}

bool Inputs::HasCaptions(bool ofService) const {
    return m_captions == Captions::OfService ? ofService : m_captions == Captions::On;
}

bool Inputs::IsHdmi(std::int32_t source) {
    return std::find(kHdmiSources.begin(), kHdmiSources.end(), source) != kHdmiSources.end();
}

bool Inputs::SetTuner(const WordList& words, std::string& error) {
    bool on = false;
    if (words.size() != 2 || !ParseEither(words[1], "on", "off", on))
        return false;
    const auto transponder = ParseTransponder(words[0]);
    if (!transponder)
        return false;
    if (on) {
        m_cut.erase(*transponder);
    } else if (m_cut.size() < kMaxCuts) {
        m_cut.insert(*transponder);
    } else {
        error = "too many transponders are cut";
        return false;
    }
    m_context.log.Write(kTunerTag, "signal of %s %s", words[0].c_str(), on ? "is back" : "is cut");
    Tell();
    return true;
}

bool Inputs::SetCaptions(const WordList& words) {
    if (words.size() != 1)
        return false;
    const auto* const found = std::find(kCaptionWords.begin(), kCaptionWords.end(), words[0]);
    if (found == kCaptionWords.end())
        return false;
    m_captions = static_cast<Captions>(found - kCaptionWords.begin());
    m_context.log.Write("tvdemuxer", "captions: %s", *found);
    Tell();
    return true;
}

bool Inputs::SetHdmi(const WordList& words) {
    bool plugged = false;
    if (words.size() != 2 || !ParseEither(words[1], "plugged", "unplugged", plugged))
        return false;
    const std::int32_t source = ParseHdmi(words[0]);
    if (source < 0)
        return false;
    m_plugged[source] = plugged;
    m_context.log.Write("extvideosrc", "source %d %s", source, words[1].c_str());
    Tell();
    return true;
}

void Inputs::Tell() {
    if (m_listener)
        m_listener();
}

json Inputs::DescribeState() const {
    json cut = json::array();
    for (const Transponder& transponder : m_cut)
        cut.push_back(transponder.ToText());
    json hdmi = json::object();
    for (const auto& [source, plugged] : m_plugged)
        hdmi[std::to_string(source)] = plugged ? "plugged" : "unplugged";
    return {{"cut", cut},
            {"captions", kCaptionWords.at(static_cast<std::size_t>(m_captions))},
            {"hdmi", hdmi}};
}

bool Inputs::Reset() {
    SetDefaults();
    return true;
}

} // namespace sim
