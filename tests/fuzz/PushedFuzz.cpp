// What a TV sends without being asked: signals to a registered callback, lines to the log's viewer. The first
// byte chooses which; the packets that follow come after an orderly welcome, then the connection
// ends. Only whole messages make signals and lines, at most one each.

#include <algorithm>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <glib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <norvex/client/NorvexAPI.h>
#include <wire/Tree.h>

#include "FakeDaemon.h"
#include "LogViewer.h"
#include "Packets.h"
#include "Replies.h"
#include "Require.h"

namespace {

std::size_t signalCount = 0;
// Of what was sent: messages that are whole, by their kind, and their trees' bytes.
std::size_t signalMessages = 0;
std::size_t logMessages = 0;
std::size_t treeBytes = 0;

int CountSignal(ESignalType, EProfile, unsigned short, TSSignalData, void*) {
    ++signalCount;
    return 0;
}

// The viewer's standard output.
int Output() {
    static const int output = [] {
        const int file = memfd_create("output", MFD_CLOEXEC);
        REQUIRE(file >= 0 && dup2(file, STDOUT_FILENO) == STDOUT_FILENO);
        return file;
    }();
    return output;
}

void Count(const wire::Buffer& bytes) {
    wire::Message message;
    REQUIRE(wire::ParseMessage(bytes.GetData(), bytes.GetSize(), message));
    if (!wire::IsWellFormed(message.tree, message.header.treeSize))
        return;
    signalMessages += message.header.kind == wire::MessageKind::Signal ? 1 : 0;
    logMessages += message.header.kind == wire::MessageKind::Log ? 1 : 0;
    treeBytes += message.header.treeSize;
}

void Push(Input& input, FakeDaemon::Connection& connection) {
    wire::PacketAssembler sent;
    bool isInOrder = true;
    while (!input.IsEmpty()) {
        for (const Packet& packet : TakePackets(input)) {
            if (!connection.SendPacket(packet))
                return connection.Close();
            if (!isInOrder || packet.empty())
                continue;
            const auto result = sent.Feed(packet.data(), packet.size());
            isInOrder = result != wire::PacketAssembler::Result::Malformed;
            if (result == wire::PacketAssembler::Result::Complete)
                Count(sent.GetMessage());
        }
    }
    connection.Close();
}

std::size_t CountLines(std::size_t size) {
    std::string text(size, '\0');
    REQUIRE(pread(Output(), text.data(), size, 0) == static_cast<ssize_t>(size));
    REQUIRE(text.empty() || text.back() == '\n');
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

void Follow() {
    REQUIRE(ftruncate(Output(), 0) == 0 && lseek(Output(), 0, SEEK_SET) == 0);
    REQUIRE(LogViewer("tag").Run() == EXIT_SUCCESS);
    const off_t written = lseek(Output(), 0, SEEK_CUR);
    REQUIRE(written >= 0 && static_cast<std::size_t>(written) <= treeBytes);
    // A line's own line ends count among its bytes.
    const std::size_t lines = CountLines(static_cast<std::size_t>(written));
    REQUIRE(logMessages > 0 || lines == 0);
}

void Listen() {
    ISignalSubscriber* subscriber = nullptr;
    REQUIRE(NorvexAPI::CreateSignalSubscriber(CountSignal, &subscriber) == 0);
    // As long as something is ready at once; what has a time to wait for is the reconnection.
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    REQUIRE(NorvexAPI::DestroySignalSubscriber(CountSignal) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const bool isLog = (input.Byte() & 1) != 0;
    signalCount = signalMessages = logMessages = treeBytes = 0;
    FakeDaemon::Get().SetAnswer([&input](FakeDaemon::Connection& connection, const wire::Message& message) {
        if (FakeDaemon::Welcome(connection, message)) {
            if (connection.role != wire::Role::Calls)
                Push(input, connection);
            return;
        }
        AnswerCall(connection, message, {});
    });
    if (isLog)
        Follow();
    else
        Listen();
    REQUIRE(signalCount <= signalMessages);
    FakeDaemon::Get().CloseAll();
    return 0;
}
