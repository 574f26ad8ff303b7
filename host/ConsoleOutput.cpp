#include "ConsoleOutput.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <optional>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "ScriptRun.h"

namespace host {

namespace {

// While it exists, SIGPIPE does not end the process for what this thread writes.
class BlockedPipeSignal {
public:
    BlockedPipeSignal() {
        sigemptyset(&m_pipe);
        sigaddset(&m_pipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &m_pipe, &m_before);
    }
    ~BlockedPipeSignal() {
        const timespec now{};
        sigtimedwait(&m_pipe, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    BlockedPipeSignal(const BlockedPipeSignal&) = delete;
    BlockedPipeSignal& operator=(const BlockedPipeSignal&) = delete;

private:
    sigset_t m_pipe;
    sigset_t m_before;
};

} // namespace

Transcript::~Transcript() {
    if (m_descriptor != -1) {
        ::close(m_descriptor);
    }
}

bool Transcript::Open(const std::string& file, const std::vector<UsedFile>& inUse, std::string& reason) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_NOCTTY | O_CLOEXEC, 0666);
    struct stat status = {};
    if (descriptor == -1 || ::fstat(descriptor, &status) != 0) {
        reason = std::generic_category().message(errno);
        return false;
    }
    m_descriptor = descriptor;
    for (const UsedFile& used : inUse) {
        if (S_ISREG(status.st_mode) && status.st_dev == used.status.st_dev && status.st_ino == used.status.st_ino) {
            reason = std::string("this file is ") + used.name;
            return false;
        }
    }
    if (S_ISREG(status.st_mode) && ::ftruncate(m_descriptor, 0) != 0) {
        reason = std::generic_category().message(errno);
        return false;
    }
    m_isPipe = S_ISFIFO(status.st_mode);
    Write(std::exchange(m_early, {}));
    return true;
}

void Transcript::Write(std::string_view text) {
    if (m_descriptor == -1) {
        m_early += text;
        return;
    }
    std::optional<BlockedPipeSignal> readerMayGo;
    if (m_isPipe && m_error == 0) {
        readerMayGo.emplace();
    }
    while (!text.empty() && m_error == 0) {
        const ssize_t written = ::write(m_descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
}

OutputTee::OutputTee(std::streambuf& output, Transcript* transcript, OutputWatch* watch)
    : m_output(output), m_transcript(transcript), m_watch(watch) {}

void OutputTee::RecordTyped(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    if (m_transcript) {
        m_transcript->Write(text);
    }
}

OutputTee::int_type OutputTee::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) {
        return traits_type::not_eof(character);
    }
    const char one = traits_type::to_char_type(character);
    return xsputn(&one, 1) == 1 ? character : traits_type::eof();
}

std::streamsize OutputTee::xsputn(const char* text, std::streamsize size) {
    const std::lock_guard lock(m_mutex);
    const std::string_view view(text, static_cast<std::size_t>(size));
    if (m_transcript) {
        m_transcript->Write(view);
    }
    const std::streamsize written = m_output.sputn(text, size);
    if (m_watch) {
        m_watch->Append(view);
    }
    return written;
}

int OutputTee::sync() {
    const std::lock_guard lock(m_mutex);
    return m_output.pubsync();
}

} // namespace host
