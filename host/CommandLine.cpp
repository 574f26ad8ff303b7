#include "CommandLine.h"

#include <algorithm>
#include <iostream>

#include <CLI/CLI.hpp>

#include "Report.h"

namespace host {

namespace {

const char kFooter[] = "Without -c and --script the plug-in reads standard input. When the plug-in reads and no input\n"
                       "is left, the process ends with status 0.\n"
                       "\n"
                       "A script's lines are executed in order:\n"
                       "  WORDS                          typed when the plug-in asks for input\n"
                       "  expect TEXT [within SECONDS]   waits until TEXT has been printed since the last step\n"
                       "                                 (default: 10 seconds; TEXT may be in \"quotes\")\n"
                       "  \\WORDS                         typed without the backslash, for lines that start with\n"
                       "                                 'expect', '#' or a backslash, or look as if\n"
                       "  # ...                          a comment\n"
                       "\n"
                       "Exit status: 0 done, 1 plug-in, entry or a file cannot be used, 2 malformed command line or\n"
                       "script, 3 an expected text did not come (file and line are printed on standard error).";

std::string OneLine(std::string text) {
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace

std::optional<ExitStatus> ReadCommandLine(int argc, const char* const* argv, CommandLine& commandLine) {
    CLI::App app("Loads a debug-menu plug-in and runs its console.", "zarn-debughost");
    app.footer(kFooter);

    app.add_option("PLUGIN", commandLine.plugin,
                   "The plug-in's library; a name without '/' is searched for by the loader.\n"
                   "Default: libzarn-debugmenu.so in ../lib next to this program, else where the\n"
                   "loader finds it")
        ->option_text(" ");
    app.add_option("--entry", commandLine.entry, "The function that runs the console (default: zarn_startmaindebug)")
        ->option_text("NAME");
    CLI::Option* words =
        app.add_option("-c", commandLine.words, "Type WORDS instead of standard input")->option_text("WORDS");
    app.add_option("--script", commandLine.scriptFile, "Run the script FILE instead of reading standard input")
        ->option_text("FILE")
        ->excludes(words);
    app.add_option("--transcript", commandLine.transcriptFile,
                   "Write what the console prints and the words typed at its prompts to FILE")
        ->option_text("FILE");

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        if (std::cout << app.help() << std::flush) {
            return ExitStatus::Done;
        }
        Report("cannot write to standard output");
        return ExitStatus::Unavailable;
    } catch (const CLI::ParseError& error) {
        Report(OneLine(error.what()));
        return ExitStatus::Usage;
    }
    return std::nullopt;
}

} // namespace host
