#include "CommandLine.h"

#include "ExitStatus.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>

namespace host {

namespace {

const char kFooter[] =
    "Without -c and --script the words are read from standard input. When the plug-in asks for\n"
    "a word and none is left, the process ends with status 0.\n"
    "\n"
    "A script types its lines, one after the other, each when the plug-in asks for a word:\n"
    "  WORDS                          typed as they stand\n"
    "  expect TEXT [within SECONDS]   waits until TEXT has been printed since the last step\n"
    "                                 (10 seconds when not given; TEXT may stand in \"quotes\")\n"
    "  \\WORDS                         typed without the backslash, for lines that would begin\n"
    "                                 with 'expect', '#' or a backslash\n"
    "  # ...                          a comment\n"
    "\n"
    "Exit status: 0 ended, 1 plug-in, entry or a file cannot be used, 2 bad command line or\n"
    "script, 3 an expected text did not come (file and line are named on standard error).";

std::string OneLine(std::string text) {
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace

std::optional<int> ReadCommandLine(int argc, const char* const* argv, TSCommandLine& commandLine) {
    CLI::App app("Opens a debug-menu plug-in and gives it the console.", "zarn-debughost");
    app.footer(kFooter);

    app.add_option(
           "PLUGIN", commandLine.m_Plugin,
           "The plug-in's library; a name without '/' is searched as the loader does.\n"
           "Default: libzarn-debugmenu.so in ../lib beside this program, then as the loader\n"
           "finds it")
        ->option_text(" ");
    app.add_option("--entry", commandLine.m_Entry,
                   "The function that runs the console (default: zarn_startmaindebug)")
        ->option_text("NAME");
    CLI::Option* words =
        app.add_option("-c", commandLine.m_Words, "Types WORDS in place of standard input")
            ->option_text("WORDS");
    app.add_option("--script", commandLine.m_ScriptFile,
                   "Types the lines of FILE in place of standard input")
        ->option_text("FILE")
        ->excludes(words);
    app.add_option("--transcript", commandLine.m_TranscriptFile,
                   "Writes what the console prints, with the words typed at their prompts, to FILE")
        ->option_text("FILE");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return std::cout.flush() ? EXIT_DONE : EXIT_UNAVAILABLE;
    } catch (const CLI::ParseError& error) {
        std::cerr << "zarn-debughost: " << OneLine(error.what()) << std::endl;
        return EXIT_USAGE;
    }
    return std::nullopt;
}

} // namespace host
