#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Component.h"
#include "Context.h"
#include "Interface.h"

namespace sim {

// IDevice: the device's key-value store and the switches of the log's tags. Both are
// stored in the database.
class Device : public Interface, public Component {
public:
    explicit Device(Context& context);

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

    Context& m_context;
    std::map<std::string, std::int32_t> m_values;
};

} // namespace sim
