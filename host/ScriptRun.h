#pragma once

#include "Script.h"

#include <functional>
#include <thread>
#include <vector>

namespace host {

class TCOutputWatch;
class TCScriptInput;

// Carries a script out, on a thread of its own, so that a console that hangs is found out by the
// expectation that it fails. Signals to the process are left to the other threads.
class TCScriptRun {
public:
    // `missed` is called on the script's thread with the step whose text did not come; the script
    // stops there. `input` and `watch` are not owned and outlive the run.
    TCScriptRun(std::vector<TSStep> steps, TCScriptInput& input, TCOutputWatch& watch,
                std::function<void(const TSStep&, const TSExpectStep&)> missed);
    ~TCScriptRun();

    // The first step begins.
    void Start();

    // The console has returned and prints no more. Texts still expected are looked for in what is
    // there, lines still to be typed have nobody to read them and pass. Returns when the script is
    // through.
    void Finish();

private:
    void Run();
    void Type(const TSTypeStep& step);

    std::vector<TSStep> m_Steps;
    TCScriptInput& m_Input;
    TCOutputWatch& m_Watch;
    std::function<void(const TSStep&, const TSExpectStep&)> m_Missed;
    std::thread m_Thread;
};

} // namespace host
