#pragma once

#include <string_view>

namespace host {

// Where the typed text comes from. Used by the thread that runs the plug-in only.
class IWordSource {
public:
    virtual ~IWordSource() = default;

    // The next bytes as they come, blocking until there are some; empty when there will be none any
    // more. The bytes stay in place until the next call.
    virtual std::string_view Next() = 0;
};

} // namespace host
