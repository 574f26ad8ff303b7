#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <CLI/CLI.hpp>
#include <base/Program.h>

#include "LogViewer.h"

namespace {

constexpr int kBadCommandLine = 2;

// The parent may have blocked or ignored these signals; here they have their default effect.
void TakeUsualSignals() {
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        static_cast<void>(std::signal(number, SIG_DFL));
    // The write fails when the reader has gone.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
}

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): one that nothing can be done about ends the viewer.
int main(int argc, char** argv) {
    sim::OpenStandardDescriptors();
    TakeUsualSignals();

    CLI::App app("Prints the lines of one tag of the simulated TV's log as they are written.", kProgram);
    app.footer("Follows the TV at NORVEX_SOCKET until the TV ends, or until interrupted. An unused tag shows nothing.");
    std::string tag;
    app.add_option("TAG", tag, "the tag, for example tvvideosink")
        ->required()
        ->check(CLI::Validator(
            [](const std::string& text) {
                return text.empty() || text.size() > 255 ? "a tag has 1 to 255 characters" : "";
            },
            "", "length"));
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        static_cast<void>(std::fputs(app.help().c_str(), stdout));
        return sim::FlushOutput(kProgram) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const CLI::ParseError& error) {
        sim::Complain(kProgram, std::string(error.what()) + "; see dlogutil --help");
        return kBadCommandLine;
    }
    return LogViewer(tag).Run();
}
