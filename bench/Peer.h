#pragma once

#include <functional>
#include <string>
#include <vector>

#include <interfaces/Interfaces.h>
#include <zarn/MenuItem.h>

namespace bench {

// The peers use the TV service's interface.
// NOLINTBEGIN(cert-err58-cpp): a benchmark without memory for its names may end.
using interfaces::DebugPrintControlMethod;
inline const std::string kInterface{interfaces::kTable<DebugPrintControlMethod>.name};
inline const std::string kExecute{interfaces::GetMethodName(DebugPrintControlMethod::Execute)};
inline const std::string kGetMenuItems{interfaces::GetMethodName(DebugPrintControlMethod::GetMenuItems)};
// NOLINTEND(cert-err58-cpp)

// The answers of a peer's process.
struct Answers {
    std::string screen;
    std::vector<TSMenuItem> items;
    // If set, makes the screen for a word in place of `screen`; GDBus only.
    std::function<std::string(const std::string& word)> answer;
};

// A reference implementation of the debug print control's calls to another process. One thread.
class Peer {
public:
    virtual ~Peer() = default;
    // Connects; to be called after the last process has been forked.
    virtual void Connect() = 0;
    // Sends `word`; the answer is a status, which is returned, and a screen.
    virtual int Execute(const std::string& word, std::string& screen) = 0;
    virtual std::vector<TSMenuItem> GetMenuItems() = 0;
};

} // namespace bench
