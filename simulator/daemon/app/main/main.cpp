// norvex-sim: the simulated TV.

#include <cerrno>
#include <csignal>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <glib.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "Components.h"
#include "Context.h"
#include "ControlServer.h"
#include "LineUpFile.h"
#include "Server.h"
#include <base/Path.h>

namespace {

struct CommandLine {
    std::string socket;
    std::string database;
    std::string log;
    std::string lineUp;
    int readyDescriptor = -1;
    unsigned clientGraceMilliseconds = sim::Clients::kGraceMilliseconds;
    sim::Options options;
};

constexpr int kFailed = 1;
constexpr int kBadCommandLine = 2;

int Fail(const std::string& line, int status = kFailed) {
    std::cerr << "norvex-sim: " + line + "\n";
    return status;
}

// The program's own exit codes; -1 when it goes on.
int ParseCommandLine(int count, char** words, CommandLine& line) {
    CLI::App app{"The simulated TV: serves the TV service's clients on a socket until it is told "
                 "to end (SIGTERM, SIGINT).",
                 "norvex-sim"};
    app.add_option("--socket", line.socket,
                   "Where clients connect; the control socket is beside "
                   "it, with .ctl at the end")
        ->envname("NORVEX_SOCKET")
        ->type_name("PATH");
    app.add_option("--database", line.database,
                   "Keep the TV's state in this file; without it, it ends with the daemon")
        ->type_name("FILE");
    app.add_option("--lineup", line.lineUp,
                   "The TV's services; without it, those in the database, or built-in ones")
        ->type_name("FILE");
    app.add_option("--log", line.log, "Write the log to the end of this file")->type_name("FILE");
    app.add_option("--ready-fd", line.readyDescriptor,
                   "Write a line to this descriptor, and close it, when clients can connect")
        ->check(CLI::Range(0, 1 << 20))
        ->type_name("N");
    app.add_option("--items", line.options.items,
                   "So many debug menu items beside the built-in ones")
        ->check(CLI::Range(0, 1000000))
        ->type_name("N");
    app.add_option("--client-grace", line.clientGraceMilliseconds,
                   "Release a client's sessions so many milliseconds after its last connection "
                   "has ended")
        ->check(CLI::Range(0, 3600000))
        ->type_name("MS")
        ->capture_default_str();
    try {
        app.parse(count, words);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return 0;
    } catch (const CLI::Error& error) {
        return Fail(error.what(), kBadCommandLine);
    }
    if (sim::GetControlPath(line.socket).size() > sim::Listener::kMaxPath)
        return Fail("--socket: " + line.socket + " is too long", kBadCommandLine);
    if (line.readyDescriptor >= 0 && fcntl(line.readyDescriptor, F_GETFD) < 0)
        return Fail("--ready-fd: " + std::to_string(line.readyDescriptor) + " is not open",
                    kBadCommandLine);
    return -1;
}

// The signals that end the daemon come through a descriptor, so that they are seen to between two
// calls and by the one thread that there is.
int BlockEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

// False: whoever waits for it would wait in vain.
bool TellReady(int descriptor) {
    if (descriptor < 0)
        return true;
    ssize_t written = 0;
    do
        written = write(descriptor, "ready\n", 6);
    while (written < 0 && errno == EINTR);
    const int error = errno;
    close(descriptor);
    errno = error;
    return written >= 0;
}

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): one that nothing can be done about ends the program.
int main(int count, char** words) {
    CommandLine line;
    if (const int status = ParseCommandLine(count, words, line); status >= 0)
        return status;
    const int ends = BlockEndSignals();
    if (ends < 0)
        return Fail(std::string("signals: ") + std::generic_category().message(errno));

    std::string error;
    if (line.socket.empty()) {
        if (!sim::MakeDefaultDirectory(error))
            return Fail(error);
        line.socket = sim::GetDefaultSocketPath();
    }
    const std::string controlPath = sim::GetControlPath(line.socket);
    sim::PathClaim claim;
    if (!claim.Take(line.socket, error))
        return Fail(error);
    sim::Log log;
    if (!line.log.empty() && !log.OpenFile(line.log))
        return Fail(line.log + ": " + std::generic_category().message(errno));
    if (!line.lineUp.empty()) {
        sim::LineUpSource lineUp{line.lineUp, {}};
        if (!sim::ReadLineUpFile(line.lineUp, lineUp.name, lineUp.text, error))
            return Fail(error);
        line.options.lineUp = std::move(lineUp);
    }
    sim::Database database;
    sim::NumberStore probe(database);
    if (!database.Open(line.database) || !probe.Prepare())
        return Fail(line.database + ": " + database.GetError());

    sim::Context context(database, log, line.clientGraceMilliseconds);
    if (!context.numbers.Prepare())
        return Fail(line.database + ": " + database.GetError());
    if (!sim::RegisterComponents(context, line.options, error))
        return Fail(error);
    sim::Server server(context.clients, context.dispatcher, context.signals, context.changes, log);
    context.SetEpoch(server.GetEpoch());
    log.SetSink([&](std::string_view tag, std::string_view text) { server.PushLine(tag, text); });
    sim::ControlServer control(context.commands, log);
    // Whoever finds the product's socket finds the control socket as well.
    if (!control.Open(controlPath, error) || !server.Open(line.socket, error))
        return Fail(error);

    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    sim::FdWatch endWatch;
    endWatch.Start(ends, G_IO_IN, [&](GIOCondition) { g_main_loop_quit(loop); });
    log.Write(sim::kOwnTag, "ready on %s", line.socket.c_str());
    int status = 0;
    if (TellReady(line.readyDescriptor))
        g_main_loop_run(loop);
    else
        status = Fail("--ready-fd: " + std::generic_category().message(errno));
    log.Write(sim::kOwnTag, "ends");
    log.SetSink(nullptr);
    endWatch.Stop();
    g_main_loop_unref(loop);
    close(ends);
    return status;
}
