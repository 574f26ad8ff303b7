#include "InputBuffer.h"

#include <utility>

namespace host {

namespace {

const char kBlanks[] = " \t\n\v\f\r";

} // namespace

TCInputBuffer::TCInputBuffer(IWordSource& source, TSHooks hooks)
    : m_Source(source), m_Hooks(std::move(hooks)) {}

TCInputBuffer::int_type TCInputBuffer::underflow() {
    if (m_Rest.empty() && !Fill()) {
        m_Hooks.m_AtEnd();
        return traits_type::eof();
    }

    const std::string_view piece = m_Hooks.m_Typed ? TakePiece() : std::exchange(m_Rest, {});
    m_AtLineStart = piece.back() == '\n';

    // A get area is never written to by a buffer that takes nothing back.
    char* const begin = const_cast<char*>(piece.data());
    setg(begin, begin, begin + piece.size());
    return traits_type::to_int_type(piece.front());
}

bool TCInputBuffer::Fill() {
    if (!m_Ended) {
        m_Hooks.m_BeforeWait();
        m_Rest = m_Source.Next();
        m_Ended = m_Rest.empty();
    }
    if (m_Ended && !m_AtLineStart) {
        m_Rest = "\n";
    }
    return !m_Rest.empty();
}

// Up to a word and the one blank behind it: the reader then has the whole word without asking
// again, and asks again for the next.
std::string_view TCInputBuffer::TakePiece() {
    const std::size_t word = m_InWord ? 0 : m_Rest.find_first_not_of(kBlanks);
    if (word == std::string_view::npos) {
        return std::exchange(m_Rest, {});
    }
    const std::size_t blank = m_Rest.find_first_of(kBlanks, word);
    m_InWord = blank == std::string_view::npos;
    const std::string_view piece = m_Rest.substr(0, m_InWord ? m_Rest.size() : blank + 1);
    m_Rest.remove_prefix(piece.size());

    m_Hooks.m_Typed(piece.substr(word, blank - word));
    if (!m_InWord) {
        m_Hooks.m_Typed("\n");
    }
    return piece;
}

} // namespace host
