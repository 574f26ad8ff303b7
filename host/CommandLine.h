#pragma once

#include <optional>
#include <string>

namespace host {

// What the user asked for.
struct TSCommandLine {
    std::string m_Plugin; // empty: the default plug-in
    std::string m_Entry = "zarn_startmaindebug";
    std::optional<std::string> m_Words;      // -c: these words take the place of standard input
    std::optional<std::string> m_ScriptFile; // so does the script
    std::optional<std::string> m_TranscriptFile;
};

// Reads the command line. When the process has nothing more to do, the help is on standard output
// or one line of complaint on standard error, and the exit status is returned.
std::optional<int> ReadCommandLine(int argc, const char* const* argv, TSCommandLine& commandLine);

} // namespace host
