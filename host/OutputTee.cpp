#include "OutputTee.h"

#include "OutputWatch.h"
#include "Transcript.h"

namespace host {

TCOutputTee::TCOutputTee(std::streambuf& output, TCTranscript* transcript, TCOutputWatch* watch)
    : m_Output(output), m_Transcript(transcript), m_Watch(watch) {}

void TCOutputTee::RecordTyped(std::string_view text) {
    const std::lock_guard lock(m_Mutex);
    if (m_Transcript) {
        m_Transcript->Write(text);
    }
}

TCOutputTee::int_type TCOutputTee::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) {
        return traits_type::not_eof(character);
    }
    const char one = traits_type::to_char_type(character);
    return xsputn(&one, 1) == 1 ? character : traits_type::eof();
}

std::streamsize TCOutputTee::xsputn(const char* text, std::streamsize size) {
    const std::lock_guard lock(m_Mutex);
    const std::string_view view(text, static_cast<std::size_t>(size));
    if (m_Transcript) {
        m_Transcript->Write(view);
    }
    const std::streamsize written = m_Output.sputn(text, size);
    if (m_Watch) {
        m_Watch->Append(view);
    }
    return written;
}

int TCOutputTee::sync() {
    const std::lock_guard lock(m_Mutex);
    return m_Output.pubsync();
}

} // namespace host
