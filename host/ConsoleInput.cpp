#include "ConsoleInput.h"

#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace host {

namespace {

const char kBlanks[] = " \t\n\v\f\r";

} // namespace

std::string_view DescriptorInput::Next() {
    for (;;) {
        const ssize_t got = ::read(m_descriptor, m_block.data(), m_block.size());
        if (got > 0) {
            return {m_block.data(), static_cast<std::size_t>(got)};
        }
        if (got == 0) {
            return {};
        }
        if (errno == EAGAIN) {
            // Another program left the shared descriptor in non-blocking mode.
            pollfd waiting{m_descriptor, POLLIN, 0};
            static_cast<void>(::poll(&waiting, 1, -1));
        } else if (errno != EINTR) {
            m_error = errno;
            return {};
        }
    }
}

InputBuffer::InputBuffer(InputSource& source, Hooks hooks) : m_source(source), m_hooks(std::move(hooks)) {}

InputBuffer::int_type InputBuffer::underflow() {
    if (m_rest.empty() && !Fill()) {
        m_hooks.atEnd();
        return traits_type::eof();
    }

    const std::string_view piece = m_hooks.typed ? TakePiece() : std::exchange(m_rest, {});
    m_atLineStart = piece.back() == '\n';

    // The get area is never written to, because nothing is put back.
    char* const begin = const_cast<char*>(piece.data());
    setg(begin, begin, begin + piece.size());
    return traits_type::to_int_type(piece.front());
}

bool InputBuffer::Fill() {
    if (!m_ended) {
        m_hooks.beforeWait();
        m_rest = m_source.Next();
        m_ended = m_rest.empty();
    }
    if (m_ended && !m_atLineStart) {
        m_rest = "\n";
    }
    return !m_rest.empty();
}

// Up to one word and the blank after it: the reader then has the whole word without another call,
// and calls again for the next.
std::string_view InputBuffer::TakePiece() {
    const std::size_t word = m_inWord ? 0 : m_rest.find_first_not_of(kBlanks);
    if (word == std::string_view::npos) {
        return std::exchange(m_rest, {});
    }
    const std::size_t blank = m_rest.find_first_of(kBlanks, word);
    m_inWord = blank == std::string_view::npos;
    const std::string_view piece = m_rest.substr(0, m_inWord ? m_rest.size() : blank + 1);
    m_rest.remove_prefix(piece.size());

    m_hooks.typed(piece.substr(word, blank - word));
    if (!m_inWord) {
        m_hooks.typed("\n");
    }
    return piece;
}

} // namespace host
