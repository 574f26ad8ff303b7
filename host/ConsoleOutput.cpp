#include "ConsoleOutput.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "ScriptRun.h"

namespace host {

Transcript::~Transcript() {
    if (m_descriptor != -1) {
        ::close(m_descriptor);
    }
}

bool Transcript::Open(const std::string& file) {
    m_descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return m_descriptor != -1;
}

void Transcript::Write(std::string_view text) {
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
