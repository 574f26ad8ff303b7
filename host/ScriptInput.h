#pragma once

#include "WordSource.h"

#include <condition_variable>
#include <mutex>
#include <string>

namespace host {

// Where the script's thread hands its lines to the console's thread: a line is given only when the
// console asks for a word, so that all that the earlier words brought about has been printed by
// then.
class TCScriptInput : public IWordSource {
public:
    // The console's thread.
    std::string_view Next() override;
    // The console has returned: it will not ask again.
    void Leave();

    // The script's thread. False where the console has returned.
    bool WaitUntilAsked();
    // Only while the console asks. `line` gets its line end here.
    void Give(const std::string& line);
    // No line will follow.
    void Close();

private:
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::string m_Line;
    bool m_Asking = false;
    bool m_Left = false;
    bool m_Closed = false;
};

} // namespace host
