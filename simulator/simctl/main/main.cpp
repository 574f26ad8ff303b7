// norvex-simctl: controls a simulated TV. It only knows its own options; the TV defines the
// commands, their arguments and their output.

#include <cstdio>
#include <string>
#include <vector>

#include <base/Path.h>
#include <base/Program.h>

#include "Ask.h"

namespace {

const char kHelp[] = "Inspects a simulated TV (norvex-sim), waits for it, makes it fail.\n"
                     "Usage: norvex-simctl [--socket PATH] COMMAND [ARGUMENT...]\n"
                     "\n"
                     "Options:\n"
                     "  -h,--help       Print this help message, or that of a command, and exit\n"
                     "  --socket PATH   The TV's socket (NORVEX_SOCKET)\n"
                     "\n"
                     "The TV at the socket defines the commands: they are listed while it runs.\n"
                     "\n";
constexpr int kFailed = 1;
constexpr int kBadArguments = 2;

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): one that nothing can be done about ends the program.
int main(int count, char** given) {
    sim::OpenStandardDescriptors();
    const std::string option = "--socket";
    std::string socketPath = sim::FindSocketPath();
    std::vector<std::string> arguments;
    for (int place = 1; place < count; ++place) {
        const std::string argument = given[place];
        if (argument.starts_with(option + "=")) {
            socketPath = argument.substr(option.size() + 1);
        } else if (argument == option && place + 1 < count) {
            socketPath = given[++place];
        } else if (argument == option) {
            simctl::Complain("--socket: expected PATH");
            return kBadArguments;
        } else {
            arguments.push_back(argument);
        }
    }
    if (arguments.empty()) {
        simctl::Complain("expected a command; --help lists them");
        return kBadArguments;
    }
    if (arguments.front() == "--help" || arguments.front() == "-h") {
        static_cast<void>(std::fputs(kHelp, stdout));
        if (!simctl::Flush())
            return kFailed;
        // Also without a TV.
        simctl::Ask(socketPath, arguments);
        return std::ferror(stdout) == 0 ? 0 : kFailed;
    }
    return simctl::Ask(socketPath, arguments);
}
