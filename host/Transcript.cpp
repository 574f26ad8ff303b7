#include "Transcript.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace host {

TCTranscript::~TCTranscript() {
    if (m_Descriptor != -1) {
        ::close(m_Descriptor);
    }
}

bool TCTranscript::Open(const std::string& file) {
    m_Descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return m_Descriptor != -1;
}

void TCTranscript::Write(std::string_view text) {
    while (!text.empty() && m_Error == 0) {
        const ssize_t written = ::write(m_Descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            m_Error = errno;
        }
    }
}

} // namespace host
