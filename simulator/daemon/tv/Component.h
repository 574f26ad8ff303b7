#pragma once

#include <nlohmann/json_fwd.hpp>

namespace sim {

class Client;

// A piece of the TV that has a state of its own. A part may be an interface as well.
class Component {
public:
    virtual ~Component() = default;

    // Where the part's state stands in the whole: "debug" is "/debug" to `norvex-simctl wait`.
    virtual const char* GetStateName() const = 0;
    virtual nlohmann::json DescribeState() const = 0;
    // Back to how it was when the daemon was new. Sessions stay open. False: the database, whose
    // error tells why, would not let go of what it keeps.
    virtual bool Reset() = 0;
    // A client is gone for good: what it has made or registered goes as well. Its sessions have
    // been closed before.
    virtual void ReleaseClient(Client&) {}
};

} // namespace sim
