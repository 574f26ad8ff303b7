#pragma once

#include <functional>
#include <string>
#include <vector>

#include <zarn/MenuItem.h>

namespace bench {

// What the far side of a peer answers with.
struct TSAnswers {
    std::string m_Screen;
    std::vector<TSMenuItem> m_Items;
    // Makes the screen of a word in m_Screen's place, where there is one; GDBus only.
    std::function<std::string(const std::string& word)> m_Answer;
};

// Another way to make the debug print control's calls to another process, on this thread.
class IPeer {
public:
    virtual ~IPeer() = default;
    // Takes up the connection; after the last far side has been forked.
    virtual void Connect() = 0;
    // Sends `word`; the answer is a status, which is returned, and a screen.
    virtual int Execute(const std::string& word, std::string& screen) = 0;
    virtual std::vector<TSMenuItem> GetMenuItems() = 0;
};

} // namespace bench
