// Random walks through the whole console, each step as predicted.

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include <CLI/CLI.hpp>

#include "Options.h"
#include "Walk.h"
#include "WordList.h"

// NOLINTNEXTLINE(bugprone-exception-escape): one that nothing can be done about ends the program.
int main(int argc, char** argv) {
    walk::Options options;
    std::string words;
    std::string file;
    bool noShrinking = false;

    CLI::App app("Walks at random through every menu of the console, in front of a faked device "
                 "with random results, and compares each step with a prediction.");
    app.add_option("--words", options.words, "words to be typed; 0 for no limit")
        ->check(CLI::Range(0L, 1000000000000L))
        ->capture_default_str();
    app.add_option("--seconds", options.seconds,
                   "no session begins after this time; 0 for no limit")
        ->check(CLI::Range(0L, 100000000L))
        ->capture_default_str();
    app.add_option("--seed", options.seed, "seed of the first session, the next one has the next")
        ->capture_default_str();
    app.add_option("--session", options.session, "words before a session leads out of the console")
        ->check(CLI::Range(1L, 1000000L))
        ->capture_default_str();
    app.add_option("--findings", options.findings, "findings after which the walk is given up")
        ->check(CLI::Range(1L, 1000L))
        ->capture_default_str();
    app.add_flag("--no-shrink", noShrinking, "do not look for a shorter run that shows a finding");
    app.add_flag("--rows", options.tellsRows, "tell how often each row was visited");
    app.add_flag("--every-row", options.everyRow,
                 "a row that was never visited is a finding; so it is in a long walk anyway");
    auto* given =
        app.add_option("--replay", words, "one session with these words, as a finding tells them");
    app.add_option("--replay-file", file, "one session with the words of this file")
        ->check(CLI::ExistingFile)
        ->excludes(given);
    app.add_option("--progress", options.progress, "walk in this process, telling of it here")
        ->check(CLI::ExistingDirectory)
        ->group("");
    try {
        app.parse(argc, argv);
        if (options.words == 0 && options.seconds == 0 && options.progress.empty())
            throw CLI::ValidationError("--words 0", "goes with --seconds");
        if (!file.empty()) {
            std::ifstream in(file, std::ios::binary);
            words.assign(std::istreambuf_iterator<char>(in), {});
        }
        options.replays = given->count() > 0 || !file.empty();
        options.replay = walk::WordList::parsed(words);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    } catch (const std::invalid_argument& error) {
        std::cerr << "walk: --replay: " << error.what() << std::endl;
        return 2;
    }
    options.shrinks = !noShrinking;

    if (options.replays)
        return walk::replay(options);
    if (!options.progress.empty())
        return walk::walk(options);
    return walk::watchOver(options, std::filesystem::read_symlink("/proc/self/exe"));
}
