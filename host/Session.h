#pragma once

#include "CommandLine.h"
#include "OutputWatch.h"
#include "Script.h"
#include "Transcript.h"

#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {

class IWordSource;
class TCScriptInput;

// One run of a plug-in's console, from its loading to the end of the process. There is one in a
// process: it takes std::cin, and std::cout where somebody listens in. Problems are reported on
// standard error, a line each.
class TCSession {
public:
    explicit TCSession(TSCommandLine commandLine) : m_CommandLine(std::move(commandLine)) {}

    // Returns the status to end the process with. Where the words are used up before the console
    // has returned, or an expected text does not come, it ends the process itself.
    int Run();

private:
    // The status to end with where the file cannot be used.
    std::optional<int> ReadScript();
    std::optional<int> OpenTranscript();

    // With the words from `words`, which is `script` where a script is given.
    int RunConsole(IWordSource& words, TCScriptInput* script);

    void Miss(const TSStep& step, const TSExpectStep& expect);
    // Ends the process at once, since a console in the middle of a read cannot be made to return.
    // No exit handler runs: the console's other thread may be inside of what it would take down.
    [[noreturn]] void EndProcess(int status);
    // Flushes what was printed and puts the terminal back. The status that the process ends with:
    // `status` if that is not 0, or nothing was lost.
    int Conclude(int status);

    TSCommandLine m_CommandLine;
    std::vector<TSStep> m_Script;
    TCTranscript m_Transcript;
    TCOutputWatch m_Watch;
    std::mutex m_Ending; // kept for good by the thread that ends the process
};

} // namespace host
