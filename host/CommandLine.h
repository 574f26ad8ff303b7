#pragma once

#include <optional>
#include <string>

namespace host {

// What the process ends with. Scripts and CI jobs depend on the numbers.
enum class ExitStatus : int {
    Done = 0,        // the entry returned, or the input ended
    Unavailable = 1, // plug-in, entry, script file, transcript or standard output cannot be used
    Usage = 2,       // malformed command line or script
    Missed = 3,      // an expected text did not come
};

// What the user asked for.
struct CommandLine {
    std::string plugin; // empty: the default plug-in
    std::string entry = "zarn_startmaindebug";
    std::optional<std::string> words;      // -c: typed instead of standard input
    std::optional<std::string> scriptFile; // run instead of standard input
    std::optional<std::string> transcriptFile;
};

// Reads the command line. When nothing is left to do (help or an error), prints the help on
// standard output or one line on standard error and returns the exit status.
std::optional<ExitStatus> ReadCommandLine(int argc, const char* const* argv, CommandLine& commandLine);

} // namespace host
