#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

namespace sim {

class Client;

// A component of the TV, with its own state. It may also be an interface.
class Component {
public:
    virtual ~Component() = default;

    // The component's name in the state: "debug" is "/debug" in `norvex-simctl wait`.
    virtual const char* GetStateName() const = 0;
    virtual nlohmann::json DescribeState() const = 0;
    // One value of the state by its name or index; null if there is none. To be overridden where the
    // whole state costs much more.
    virtual nlohmann::json DescribeValue(const std::string& name) const;
    // Restores the initial state. Sessions stay open. False if stored values could not be removed:
    // see the database's error.
    virtual bool Reset() = 0;
    // A client has been released: discard what it has created or registered. Its sessions have
    // already been closed.
    virtual void ReleaseClient(Client&) {}
};

} // namespace sim
