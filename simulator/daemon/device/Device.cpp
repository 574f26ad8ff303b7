#include "Device.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include <base/Number.h>
#include <base/Path.h>
#include <nlohmann/json.hpp>

#include "Results.h"

namespace sim {

using nlohmann::json;

namespace {

// In the database.
const char kKeysPart[] = "device/keys";
const char kTagsPart[] = "device/tags";

constexpr std::size_t kMaxName = 128;
constexpr std::size_t kMaxTags = 1024;
constexpr std::size_t kMaxKeys = 1024;

// Names are shown in lines and in the state: printable ASCII.
bool IsName(const std::string& text) {
    return !text.empty() && text.size() <= kMaxName &&
           std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

} // namespace

Device::Device(Context& context, const std::string& directory)
    : Interface(interfaces::kTable<interfaces::DeviceMethod>, Calls::ToInterface), m_context(context),
      m_marker(directory.empty() ? "" : directory + "/" + kProviderMarker) {
    Add(interfaces::DeviceMethod::GetInt, {Out("status", kInt), In("key", kText), Out("value", kInt)}, &Device::GetInt);
    Add(interfaces::DeviceMethod::StartLogTag, {Out("status", kInt), In("tag", kText)}, &Device::StartLogTag);
    Add(interfaces::DeviceMethod::StopLogTag, {Out("status", kInt), In("tag", kText)}, &Device::StopLogTag);
    context.settings.Add("key", "KEY NUMBER: a number in the key-value store",
                         [this](const auto& words, auto& error) { return SetKey(words, error); });

    SetDefaults();
    m_context.numbers.ForEach(kKeysPart, [this](std::string_view key, std::int64_t value) {
        m_values[std::string(key)] = static_cast<std::int32_t>(value);
    });
    m_context.numbers.ForEach(kTagsPart, [this](std::string_view tag, std::int64_t started) {
        m_context.log.SetTag(std::string(tag), started != 0);
    });
    if (m_marker.empty())
        return;
    if (const std::string parent = m_marker.substr(0, m_marker.rfind('/')); !MakeDirectories(parent))
        context.log.Write(kOwnTag, "cannot create the directory %s: %s", parent.c_str(),
                          std::generic_category().message(errno).c_str());
    FollowMarker();
    context.clients.SetBeginHook([this] { FollowMarker(); });
}

bool Device::HasMarker() const {
    struct stat marker {};
    return stat(m_marker.c_str(), &marker) == 0;
}

void Device::FollowMarker() const {
    m_context.changes.Mark("/device/logTags");
    m_isFollowed = HasMarker();
    for (const char* tag : kProviderTags)
        m_context.log.SetTag(tag, m_isFollowed);
}

bool Device::RemoveMarker() {
    return m_marker.empty() || unlink(m_marker.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR;
}

void Device::SetDefaults() {
    m_values = {{"db/tv-viewer/window_id", 1}};
    m_context.log.ResetTags();
}

void Device::GetInt(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    const std::string key(in.Text(1));
    const auto found = m_values.find(key);
    if (found == m_values.end())
        return out.Int(0, m_context.log.Refuse(kUnknown, kOwnTag, "unknown key \"%s\"", key.c_str()));
    out.Int(0, kDone);
    out.Int(2, found->second);
}

void Device::StartLogTag(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    out.Int(0, SwitchTag(std::string(in.Text(1)), true));
}

void Device::StopLogTag(const Call&, const ArgumentReader& in, ReplyWriter& out) {
    out.Int(0, SwitchTag(std::string(in.Text(1)), false));
}

std::int32_t Device::SwitchTag(const std::string& tag, bool started) {
    Log& log = m_context.log;
    if (!IsName(tag) || (tag == kOwnTag && !started))
        return log.Refuse(kBadArgument, kOwnTag, "the log tag \"%s\" cannot be %s", tag.c_str(),
                          started ? "started" : "stopped");
    if (!log.GetTags().contains(tag) && log.GetTags().size() >= kMaxTags)
        return kTooMany;
    if (!m_context.numbers.Put(kTagsPart, tag, started))
        return log.Refuse(kNotKept, kOwnTag, "the log tag \"%s\" could not be stored: %s", tag.c_str(),
                          m_context.database.GetError().c_str());
    m_context.changes.Mark("/device/logTags");
    log.SetTag(tag, started);
    log.Write(kOwnTag, "log tag %s %s", tag.c_str(), started ? "started" : "stopped");
    return kDone;
}

bool Device::SetKey(const std::vector<std::string>& values, std::string& error) {
    std::int32_t value = 0;
    if (values.size() != 2 || !IsName(values[0]) || !ParseNumber(values[1], value))
        return false;
    const std::string& key = values[0];
    if (!m_values.contains(key) && m_values.size() >= kMaxKeys) {
        error = "the key-value store is full";
        return false;
    }
    if (!m_context.numbers.Put(kKeysPart, key, value)) {
        error = m_context.database.GetError();
        return false;
    }
    m_values[key] = value;
    return true;
}

json Device::DescribeState() const {
    if (!m_marker.empty() && HasMarker() != m_isFollowed)
        FollowMarker();
    json tags = json::object();
    for (const auto& [tag, started] : m_context.log.GetTags())
        tags[tag] = started;
    return {{"keys", m_values}, {"logTags", tags}};
}

bool Device::Reset() {
    Transaction together(m_context.database);
    if (!together.IsOpen() || !m_context.numbers.Clear(kKeysPart) || !m_context.numbers.Clear(kTagsPart) ||
        !together.Commit())
        return false;
    SetDefaults();
    if (!RemoveMarker())
        m_context.log.Write(kOwnTag, "cannot remove %s: %s", m_marker.c_str(),
                            std::generic_category().message(errno).c_str());
    if (!m_marker.empty())
        FollowMarker();
    return true;
}

} // namespace sim
