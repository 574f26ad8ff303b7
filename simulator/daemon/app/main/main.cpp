// norvex-sim: the simulated TV.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <base/Path.h>
#include <base/Program.h>

#include "CommandLine.h"
#include "Components.h"
#include "Context.h"
#include "ControlServer.h"
#include "LineUpFile.h"
#include "Server.h"

namespace {

struct Given {
    std::string socket;
    std::string database;
    std::string log;
    std::string lineUp;
    std::optional<std::int32_t> readyDescriptor;
    std::optional<std::int32_t> lifeDescriptor;
    std::int32_t items = 0;
    std::int32_t clientGraceMilliseconds = sim::Clients::kGraceMilliseconds;
};

const char kProgram[] = "norvex-sim";
constexpr int kFailed = 1;
constexpr std::int32_t kMaxDescriptor = 1 << 20;
constexpr std::int32_t kMaxItems = 1'000'000;
constexpr std::int32_t kMaxGraceMilliseconds = 3'600'000;

int Fail(const std::string& line, int status = kFailed) {
    sim::Complain(kProgram, line);
    return status;
}

bool IsPipe(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

// The program's status; nothing if it continues.
std::optional<int> ParseCommandLine(const std::vector<std::string>& arguments, Given& given) {
    sim::CommandLine line(kProgram, "The simulated TV. Serves clients on a socket until SIGTERM, SIGINT or SIGHUP.");
    line.Text("--socket", given.socket, "PATH",
              "Where clients connect (NORVEX_SOCKET); the control socket has the same path with .ctl appended");
    line.Text("--database", given.database, "FILE",
              "Keep the TV's state in this file; without it the state is lost when the TV ends");
    line.Text("--lineup", given.lineUp, "FILE",
              "The TV's services; without it those in the database, or the built-in ones");
    line.Text("--log", given.log, "FILE", "Append the log to this file");
    line.Integer("--ready-fd", given.readyDescriptor, 0, kMaxDescriptor, "N",
                 "When clients can connect, write a line to this descriptor and close it");
    line.Integer("--life-fd", given.lifeDescriptor, 0, kMaxDescriptor, "N",
                 "End when the other end of the pipe at this descriptor is closed");
    line.Integer("--items", given.items, 0, kMaxItems, "N",
                 "Number of debug menu items in addition to the built-in ones");
    line.Integer("--client-grace", given.clientGraceMilliseconds, 0, kMaxGraceMilliseconds, "MS",
                 "Milliseconds from the end of a client's last connection to the release of its sessions (2000)");
    if (const auto ending = line.Parse(arguments)) {
        if (ending->status != 0)
            return Fail(ending->text, ending->status);
        static_cast<void>(std::fputs(ending->text.c_str(), stdout));
        return sim::FlushOutput(kProgram) ? 0 : kFailed;
    }
    if (given.socket.empty())
        given.socket = sim::FindSocketPath();
    if (sim::GetControlPath(given.socket).size() > sim::Listener::kMaxPath)
        return Fail("--socket: " + given.socket + " is too long", sim::CommandLine::kBadArguments);
    if (given.readyDescriptor && fcntl(*given.readyDescriptor, F_GETFD) < 0)
        return Fail("--ready-fd: " + std::to_string(*given.readyDescriptor) + " is not open",
                    sim::CommandLine::kBadArguments);
    if (given.lifeDescriptor && !IsPipe(*given.lifeDescriptor))
        return Fail("--life-fd: " + std::to_string(*given.lifeDescriptor) + " is not a pipe",
                    sim::CommandLine::kBadArguments);
    return {};
}

// Clients and those that wait take a descriptor each: more than a shell's usual limit.
void RaiseDescriptorLimit() {
    constexpr rlim_t kWanted = 4096;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= kWanted)
        return;
    limit.rlim_cur = std::min(kWanted, limit.rlim_max);
    setrlimit(RLIMIT_NOFILE, &limit);
}

// The signals that end the daemon are read from a descriptor, so that the daemon's only thread
// handles them between calls.
int BlockEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    // Unless the starter (nohup) wants it to be ignored.
    struct sigaction hangUp {};
    if (sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN)
        sigaddset(&signals, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

// False: the parent would wait forever.
bool TellReady(std::optional<int> descriptor) {
    if (!descriptor)
        return true;
    ssize_t written = 0;
    do
        written = write(*descriptor, "ready\n", 6);
    while (written < 0 && errno == EINTR);
    const int error = errno;
    close(*descriptor);
    errno = error;
    return written >= 0;
}

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): one that nothing can be done about ends the program.
int main(int count, char** arguments) try {
    sim::OpenStandardDescriptors();
    Given given;
    if (const auto status = ParseCommandLine({arguments + 1, arguments + count}, given))
        return *status;
    RaiseDescriptorLimit();
    const int ends = BlockEndSignals();
    if (ends < 0)
        return Fail(std::string("signals: ") + std::generic_category().message(errno));
    sim::EventLoop& loop = sim::EventLoop::Get();

    std::string error;
    if (given.socket == sim::GetDefaultSocketPath() && !sim::MakeDefaultDirectory(error))
        return Fail(error);
    const std::string controlPath = sim::GetControlPath(given.socket);
    sim::PathClaim claim;
    if (!claim.Take(given.socket, error))
        return Fail(error);
    sim::Log log;
    if (!given.log.empty() && !log.OpenFile(given.log))
        return Fail(given.log + ": " + std::generic_category().message(errno));
    sim::Options options;
    options.deviceDirectory = sim::FindDeviceDirectory(error);
    if (options.deviceDirectory.empty())
        return Fail(error);
    options.items = static_cast<std::uint32_t>(given.items);
    if (!given.lineUp.empty()) {
        sim::LineUpSource lineUp{given.lineUp, {}};
        if (!sim::ReadLineUpFile(given.lineUp, lineUp.name, lineUp.text, error))
            return Fail(error);
        options.lineUp = std::move(lineUp);
    }
    sim::Database database;
    sim::NumberStore probe(database);
    if (!database.Open(given.database) || !probe.Prepare())
        return Fail(given.database + ": " + database.GetError());

    sim::Context context(database, log, static_cast<unsigned>(given.clientGraceMilliseconds));
    if (!context.numbers.Prepare())
        return Fail(given.database + ": " + database.GetError());
    if (!sim::RegisterComponents(context, options, error))
        return Fail(error);
    sim::Server server(context.clients, context.dispatcher, context.signals, context.changes, log);
    context.SetEpoch(server.GetEpoch());
    log.SetSink([&](std::string_view tag, std::string_view text) { server.PushLine(tag, text); });
    sim::ControlServer control(context.commands, log);
    // Opened first: once the product's socket exists, so does the control socket.
    if (!control.Open(controlPath, error) || !server.Open(given.socket, error))
        return Fail(error);

    sim::FdWatch endWatch;
    endWatch.Start(ends, EPOLLIN, [&](std::uint32_t) { loop.Quit(); });
    sim::FdWatch lifeWatch;
    if (given.lifeDescriptor)
        lifeWatch.Start(*given.lifeDescriptor, 0, [&](std::uint32_t) { loop.Quit(); });
    log.Write(sim::kOwnTag, "ready on %s", given.socket.c_str());
    int status = 0;
    if (TellReady(given.readyDescriptor))
        loop.Run();
    else
        status = Fail("--ready-fd: " + std::generic_category().message(errno));
    log.Write(sim::kOwnTag, "ends");
    log.SetSink(nullptr);
    endWatch.Stop();
    lifeWatch.Stop();
    close(ends);
    return status;
} catch (const std::system_error& failure) {
    // The kernel cannot create an event loop, or watch the sockets.
    return Fail(failure.what());
}
