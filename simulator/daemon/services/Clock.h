#pragma once

#include <cstdint>

#include "Component.h"
#include "Context.h"

namespace sim {

// The TV's time: the machine's, or one that has been set (`norvex-simctl set clock`) and keeps
// running.
class Clock : public Component {
public:
    explicit Clock(Context& context);

    std::int64_t Now() const; // seconds since 1970

    const char* GetStateName() const override { return "clock"; }
    nlohmann::json DescribeState() const override;
    bool Reset() override {
        m_offset = 0;
        return true;
    }

private:
    bool Set(const std::vector<std::string>& values, std::string& error);

    Context& m_context;
    std::int64_t m_offset = 0; // seconds before the machine's time
};

} // namespace sim
