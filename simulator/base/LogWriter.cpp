#include <cerrno>
#include <cinttypes>

#include <fcntl.h>
#include <unistd.h>

#include <base/LogLine.h>
#include <base/LogWriter.h>
#include <base/Printed.h>

namespace sim {

bool LogWriter::Open(const std::string& path) {
    constexpr int kFlags = O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    m_file = open(path.c_str(), kFlags | O_WRONLY, 0600);
    // Without a reader a pipe can only be opened for both; it then keeps the first lines for one.
    if (m_file < 0 && errno == ENXIO)
        m_file = open(path.c_str(), kFlags | O_RDWR, 0600);
    return m_file >= 0;
}

void LogWriter::Close() {
    if (m_file >= 0)
        close(m_file);
    m_file = -1;
}

bool LogWriter::Write(std::string_view line) {
    if (m_lostCount > m_reportedCount) {
        char prefix[256];
        std::string report(prefix, WriteLogPrefix(prefix, sizeof prefix, m_tag));
        report += m_beginning;
        report += Printed("lines lost because they could not be written: %" PRIu64 "\n", m_lostCount - m_reportedCount);
        if (TryWrite(report))
            m_reportedCount = m_lostCount;
    }
    if (m_lostCount == m_reportedCount && TryWrite(line))
        return true;
    ++m_lostCount;
    return false;
}

bool LogWriter::TryWrite(std::string_view line) {
    std::string ended;
    if (m_isLineOpen) {
        ended = "\n";
        ended += line;
        line = ended;
    }
    ssize_t written = 0;
    do
        written = write(m_file, line.data(), line.size());
    while (written < 0 && errno == EINTR);
    if (written > 0)
        m_isLineOpen = line[static_cast<std::size_t>(written) - 1] != '\n';
    return written == static_cast<ssize_t>(line.size());
}

} // namespace sim
