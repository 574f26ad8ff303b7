#include "ScriptRun.h"

#include "OutputWatch.h"
#include "ScriptInput.h"

#include <csignal>
#include <utility>

namespace host {

TCScriptRun::TCScriptRun(std::vector<TSStep> steps, TCScriptInput& input, TCOutputWatch& watch,
                         std::function<void(const TSStep&, const TSExpectStep&)> missed)
    : m_Steps(std::move(steps)), m_Input(input), m_Watch(watch), m_Missed(std::move(missed)) {}

TCScriptRun::~TCScriptRun() {
    Finish();
}

void TCScriptRun::Start() {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    m_Thread = std::thread([this] { Run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void TCScriptRun::Finish() {
    if (m_Thread.joinable()) {
        m_Watch.End();
        m_Input.Leave();
        m_Thread.join();
    }
}

void TCScriptRun::Run() {
    for (const TSStep& step : m_Steps) {
        if (const auto* type = std::get_if<TSTypeStep>(&step.m_Action)) {
            Type(*type);
        } else {
            const auto& expect = std::get<TSExpectStep>(step.m_Action);
            if (!m_Watch.WaitFor(expect.m_Text, expect.m_Limit)) {
                m_Missed(step, expect);
                break;
            }
        }
    }
    m_Watch.Forget();
    m_Input.Close();
}

void TCScriptRun::Type(const TSTypeStep& step) {
    m_Watch.Forget();
    const bool asked = m_Input.WaitUntilAsked();
    m_Watch.Resume();
    if (asked) {
        m_Input.Give(step.m_Line);
    }
}

} // namespace host
