#include "LogViewer.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include <base/Program.h>
#include <wire/Tree.h>

#include "DaemonConnection.h"
#include "Environment.h"

namespace {

// False with the reason in errno; EPIPE: the reader has gone.
bool WriteWhole(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd output{STDOUT_FILENO, POLLOUT, 0};
            poll(&output, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

// The line of a log message; false for any other message.
bool GetLine(const wire::Message& message, std::string& line) {
    if (message.header.kind != wire::MessageKind::Log || !wire::IsWellFormed(message.tree, message.header.treeSize))
        return false;
    wire::NodeCursor cursor(message.tree, message.header.treeSize);
    wire::Node node;
    std::string_view text;
    while (cursor.Next(node)) {
        if (node.tag == wire::kLogLine && wire::GetText(node, text)) {
            line.assign(text);
            line += '\n';
            return true;
        }
    }
    return false;
}

std::unique_ptr<DaemonConnection> Follow(const std::string& tag, Failure& failure) {
    const std::chrono::milliseconds limit = Limits::Find().connect;
    DaemonConnection::Purpose purpose;
    purpose.role = wire::Role::Log;
    purpose.logTag = tag;
    std::unique_ptr<DaemonConnection> connection = DaemonConnection::Open(FindSocketPath(), purpose, limit, failure);
    if (connection != nullptr) {
        failure = connection->AwaitWelcome(limit);
        if (failure != Failure::None)
            connection.reset();
    }
    return connection;
}

} // namespace

LogViewer::LogViewer(std::string tag) : m_tag(std::move(tag)) {}

int LogViewer::Run() {
    Failure failure = Failure::None;
    const std::unique_ptr<DaemonConnection> connection = Follow(m_tag, failure);
    if (connection == nullptr) {
        sim::Complain(kProgram,
                      (failure == Failure::Absent ? "no TV is running at " : "no answer from ") + FindSocketPath());
        return EXIT_FAILURE;
    }
    std::string line;
    while (true) {
        wire::Message message;
        switch (connection->TakePushed(message)) {
        case Failure::None:
            if (GetLine(message, line) && !WriteWhole(line)) {
                if (errno == EPIPE)
                    return EXIT_SUCCESS;
                sim::Complain(kProgram, "standard output: " + std::generic_category().message(errno));
                return EXIT_FAILURE;
            }
            continue;
        case Failure::Unresponsive:
            break;
        default:
            return EXIT_SUCCESS;
        }
        // Without requested events, standard output only reports that its reader has gone.
        pollfd sources[] = {{connection->GetDescriptor(), POLLIN, 0}, {STDOUT_FILENO, 0, 0}};
        if (poll(sources, 2, -1) < 0 && errno != EINTR)
            return EXIT_FAILURE;
        if (sources[1].revents != 0)
            return EXIT_SUCCESS;
    }
}
