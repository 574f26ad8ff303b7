#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <base/LogFile.h>

namespace devicelog {

namespace {

// Creates `path` and its parents.
void MakeDirectories(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        mkdir(path.substr(0, slash).c_str(), 0700);
    mkdir(path.c_str(), 0700);
}

const char* FindVariable(const char* name) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here changes the environment.
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : nullptr;
}

} // namespace

LogFile::LogFile(std::string path, long limit) : m_path(std::move(path)), m_limit(limit) {}

LogFile::~LogFile() {
    if (m_file >= 0)
        close(m_file);
}

std::string LogFile::FindPath() {
    if (const char* file = FindVariable("NORVEX_LOG"))
        return file;
    std::string directory;
    if (const char* state = FindVariable("XDG_STATE_HOME"))
        directory = state;
    else if (const char* home = FindVariable("HOME"))
        directory = std::string(home) + "/.local/state";
    else
        return {};
    directory += "/norvex";
    MakeDirectories(directory);
    return directory + "/norvex.log";
}

bool LogFile::Open() {
    m_file = open(m_path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600);
    return m_file >= 0;
}

// The lock lets one process at a time rotate the file; a process that finds it rotated already only
// opens the new one.
void LogFile::Rotate() {
    flock(m_file, LOCK_EX);
    struct stat mine {};
    struct stat named {};
    if (fstat(m_file, &mine) == 0 && stat(m_path.c_str(), &named) == 0 && mine.st_ino == named.st_ino &&
        mine.st_dev == named.st_dev)
        // A file that cannot be renamed keeps being written.
        static_cast<void>(std::rename(m_path.c_str(), (m_path + ".1").c_str()));
    close(m_file);
    m_file = -1;
}

bool LogFile::Append(std::string_view line) {
    if (m_path.empty() || (m_file < 0 && !Open()))
        return false;
    struct stat status {};
    if (fstat(m_file, &status) == 0 && S_ISREG(status.st_mode) && (status.st_size >= m_limit || status.st_nlink == 0)) {
        Rotate();
        if (!Open())
            return false;
    }
    ssize_t written = 0;
    do
        written = write(m_file, line.data(), line.size());
    while (written < 0 && errno == EINTR);
    return written == static_cast<ssize_t>(line.size());
}

} // namespace devicelog
