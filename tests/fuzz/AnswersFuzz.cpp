// What norvex-simctl is answered: the first byte chooses the subcommand, the rest is what the
// daemon's control socket says until it ends. Whatever it is, the program ends with a status.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <sys/socket.h>
#include <unistd.h>

#include "Input.h"
#include "Require.h"
#include "Subcommands.h"

namespace {

std::span<const std::uint8_t> answer;
int farEnd = -1;

// A subcommand with its words, ready to be run any number of times.
struct Program {
    explicit Program(std::vector<std::string> words) {
        line.socketPath = "socket";
        app.require_subcommand(1);
        simctl::AddState(app, line);
        simctl::AddCalls(app, line);
        simctl::AddInject(app, line);
        simctl::AddWait(app, line);
        simctl::AddReset(app, line);
        simctl::AddSet(app, line);
        simctl::AddSignal(app, line);
        simctl::AddLineUp(app, line);
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
        REQUIRE(line.run);
    }
    CLI::App app;
    simctl::Line line;
};

std::vector<std::unique_ptr<Program>> MakePrograms() {
    const std::vector<std::vector<std::string>> lines{
        {"state"},
        {"state", "--json"},
        {"calls"},
        {"calls", "--json"},
        {"calls", "--follow"},
        {"inject", "IAVControl.MuteVideo", "--result", "-3"},
        {"wait", "/debug/qos == true"},
        {"reset"},
        {"set", "key", "a", "1"},
        {"signal", "SIGNAL_SI_STARTED"},
        {"lineup", "show"},
        {"lineup", "load", "/dev/null"}};
    std::vector<std::unique_ptr<Program>> programs;
    for (const auto& words : lines)
        programs.push_back(std::make_unique<Program>(words));
    return programs;
}

} // namespace

// In place of the C library's: whoever connects finds the answer there already, and its end.
extern "C" __attribute__((visibility("default"))) int connect(int socket, const sockaddr*,
                                                              socklen_t) {
    int ends[2];
    REQUIRE(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
    REQUIRE(dup2(ends[0], socket) == socket);
    close(ends[0]);
    farEnd = ends[1];
    if (!answer.empty())
        send(farEnd, answer.data(), answer.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    shutdown(farEnd, SHUT_WR);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<std::unique_ptr<Program>> programs = MakePrograms();
    Input input(data, size);
    const Program& program = *programs[input.Byte() % programs.size()];
    answer = input.Rest();
    const int status = program.line.run();
    REQUIRE(status == 0 || status == 1);
    if (farEnd >= 0)
        close(std::exchange(farEnd, -1));
    return 0;
}
