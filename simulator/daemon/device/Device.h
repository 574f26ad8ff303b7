#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Component.h"
#include "Context.h"
#include "Interface.h"

namespace sim {

// IDevice: the device's key-value store and the switches of the log's tags. Both are stored in the database, but for the
// tags of the live provider: the console keeps their switch in a marker file of the device, and they follow it whenever
// the TV or a client begins, and when the state is shown. A reset removes it.
class Device : public Interface, public Component {
public:
    // `directory` has the device's files, and is created; empty: there are none.
    Device(Context& context, const std::string& directory);

    const char* GetStateName() const override { return "device"; }
    nlohmann::json DescribeState() const override;
    bool Reset() override;

private:
    void GetInt(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void StartLogTag(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void StopLogTag(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    std::int32_t SwitchTag(const std::string& tag, bool started);
    bool SetKey(const std::vector<std::string>& values, std::string& error);
    void SetDefaults();
    bool HasMarker() const;
    void FollowMarker() const;
    bool RemoveMarker();

    Context& m_context;
    std::string m_marker;              // a path, or empty
    mutable bool m_isFollowed = false; // what the marker said last
    std::map<std::string, std::int32_t> m_values;
};

} // namespace sim
