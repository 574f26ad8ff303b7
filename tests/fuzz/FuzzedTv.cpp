#include "FuzzedTv.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <sys/socket.h>
#include <sys/un.h>

#include "Components.h"
#include "Require.h"

namespace {

const char kLineUp[] = "transponder air 474000\n"
                       "  service 0xfa0000000000002d 7-1 \"One\" captions barker\n"
                       "    programme 06:00 60 \"News\"\n"
                       "  service 0x1 8 \"Two\" profile=2 hidden\n"
                       "transponder cable 330000\n"
                       "  service 0x2 9 \"Three\" unlisted\n"
                       "streamed air\n"
                       "  service 0x3 10 \"Four\"\n";
// Rounds of the loop in one go. A TV that always has something more to do is a finding, too.
constexpr int kMaxRounds = 100'000;

std::string MakeDirectory() {
    char name[] = "/tmp/fuzzed-tv-XXXXXX";
    REQUIRE(mkdtemp(name) != nullptr);
    static std::string made;
    made = name;
    const auto remove = [] {
        std::error_code ignored;
        std::filesystem::remove_all(made, ignored);
    };
    REQUIRE(std::atexit(remove) == 0);
    return made;
}

sim::Database& Open(sim::Database& database) {
    REQUIRE(database.Open({}));
    return database;
}

int ConnectTo(const std::string& path, int type) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    REQUIRE(path.size() < sizeof address.sun_path);
    std::memcpy(address.sun_path, path.data(), path.size());
    const int descriptor = socket(AF_UNIX, type | SOCK_CLOEXEC, 0);
    REQUIRE(connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
    return descriptor;
}

} // namespace

FuzzedTv& FuzzedTv::Get() {
    static auto* tv = new FuzzedTv;
    return *tv;
}

FuzzedTv::FuzzedTv()
    : m_directory(MakeDirectory()), m_context(Open(m_database), m_log),
      m_server(m_context.clients, m_context.dispatcher, m_context.signals, m_context.changes, m_log),
      m_control(m_context.commands, m_log) {
    std::string error;
    sim::Options options;
    options.lineUp = sim::LineUpSource{"small", kLineUp};
    REQUIRE(m_context.numbers.Prepare() && sim::RegisterComponents(m_context, options, error));
    m_log.SetSink([this](std::string_view tag, std::string_view line) { m_server.PushLine(tag, line); });
    REQUIRE(m_control.Open(GetFile("socket.ctl"), error) && m_server.Open(GetFile("socket"), error));
    std::ofstream(GetFile("lineup")) << kLineUp;
}

int FuzzedTv::Connect() const {
    return ConnectTo(GetFile("socket"), SOCK_SEQPACKET);
}

int FuzzedTv::ConnectControl() const {
    return ConnectTo(GetFile("socket.ctl"), SOCK_STREAM);
}

void FuzzedTv::Settle() {
    int rounds = 0;
    while (sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::Never))
        REQUIRE(++rounds < kMaxRounds);
}
