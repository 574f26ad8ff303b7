#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CommandLine.h"
#include "ConsoleOutput.h"
#include "Script.h"
#include "ScriptRun.h"

namespace host {

class Plugin;

// One run of a plug-in's console, from loading it to the end of the process. One per process: it
// replaces the buffer of std::cin, and that of std::cout when there is a transcript or a script.
// Reports problems on standard error, one line each.
class ConsoleRun {
public:
    explicit ConsoleRun(CommandLine commandLine) : m_commandLine(std::move(commandLine)) {}

    // Returns the status to end the process with. When the input ends before the console has
    // returned, or an expected text does not come, it ends the process itself.
    ExitStatus Run();

private:
    // The status to end with when the file cannot be used.
    std::optional<ExitStatus> ReadScript();
    // Once nothing else can fail, since it replaces an earlier record. False when it has reported why not.
    bool OpenTranscript(const Plugin& plugin);

    // With the input from `source`, which is `script` when there is a script, else null.
    ExitStatus RunConsole(InputSource& source, ScriptInput* script);

    void ReportMissed(const Step& step, const ExpectStep& expect);
    // Ends the process at once, since a console in the middle of a read cannot be made to return.
    // No exit handler runs: the console's other thread may be using what it would destroy.
    [[noreturn]] void EndProcess(ExitStatus status);
    // For the exception that is being handled. Any thread.
    [[noreturn]] void EndByException();
    // Flushes the output and restores the terminal. Returns the status to end with: `status`, or
    // Unavailable when that is Done but output or transcript could not be written.
    ExitStatus Conclude(ExitStatus status);

    CommandLine m_commandLine;
    std::vector<Step> m_script;
    std::vector<UsedFile> m_filesInUse; // not to be overwritten by the transcript
    Transcript m_transcript;
    OutputWatch m_watch;
    std::mutex m_ending; // held for good by the thread that ends the process
};

} // namespace host
