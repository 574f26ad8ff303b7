#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>

namespace host {

// Looks for texts in what the console prints. One thread waits; any thread may print.
//
// Only what was printed since the last mark counts, and a text that was found is used up together
// with all before it: the next wait goes on behind it.
class TCOutputWatch {
public:
    // Printed, by any thread.
    void Append(std::string_view text);

    // What was printed so far no longer counts, and neither does what is printed before Resume.
    void Forget();
    // What is printed from now on counts. A watch begins in this state.
    void Resume();

    // Holds until `text` has been printed; false when `limit` has passed without it, or the output
    // has ended.
    bool WaitFor(std::string_view text, std::chrono::steady_clock::duration limit);

    // Nothing more will be printed: who waits is woken, and later waits look only at what is there.
    void End();

private:
    bool Search();

    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::string m_Printed; // since the mark, or what of it a match can still begin in
    std::string m_Wanted;  // empty while nobody waits
    bool m_Found = false;
    bool m_Listening = true;
    bool m_Ended = false;
};

} // namespace host
