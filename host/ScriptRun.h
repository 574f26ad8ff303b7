#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ConsoleInput.h"
#include "Script.h"

namespace host {

// Waits for texts in the console's output. One thread waits; any thread may print.
//
// Only what was printed since the last mark counts. A text that was found is consumed together with
// everything before it: the next wait continues after it.
class OutputWatch {
public:
    // `text` was printed. Any thread.
    void Append(std::string_view text);

    // What was printed so far no longer counts, nor what is printed before Resume.
    void Forget();
    // What is printed from now on counts. The initial state.
    void Resume();

    // Waits until `text` has been printed. False on timeout, or when the output ends without it.
    bool WaitFor(std::string_view text, std::chrono::steady_clock::duration limit);

    // Nothing more will be printed: wakes the waiter; later waits only search what is there.
    void End();

private:
    bool Search();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_printed; // since the mark, as far as a match can still begin in it
    std::string m_wanted;  // empty while nobody waits
    bool m_found = false;
    bool m_listening = true;
    bool m_ended = false;
};

// Passes lines from the script's thread to the console's thread. A line is passed only when the
// console asks for input, so that the output of the earlier words has been printed by then.
class ScriptInput : public InputSource {
public:
    // Console's thread.
    std::string_view Next() override;
    // The console has returned and will not ask again. Console's thread.
    void Leave();

    // Script's thread. False when the console has returned.
    bool WaitUntilAsked();
    // Passes `line`, to which a line end is added. Only while the console asks. Script's thread.
    void Give(const std::string& line);
    // No line will follow. Script's thread.
    void Close();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_line;
    bool m_asking = false;
    bool m_left = false;
    bool m_closed = false;
};

// Runs a script on a thread of its own, so that a console that hangs fails the next expectation.
// Signals to the process are left to the other threads.
class ScriptRun {
public:
    // `missed` is called on the script's thread with the step whose text did not come; the script
    // stops there. `input` and `watch` are not owned and must outlive the run.
    ScriptRun(std::vector<Step> steps, ScriptInput& input, OutputWatch& watch,
              std::function<void(const Step&, const ExpectStep&)> missed);
    ~ScriptRun();

    // Starts with the first step.
    void Start();

    // The console has returned and prints no more. Remaining expectations search what was printed;
    // remaining lines are skipped. Returns when the script is finished.
    void Finish();

private:
    void Run();
    void Type(const TypeStep& step);

    std::vector<Step> m_steps;
    ScriptInput& m_input;
    OutputWatch& m_watch;
    std::function<void(const Step&, const ExpectStep&)> m_missed;
    std::thread m_thread;
};

} // namespace host
