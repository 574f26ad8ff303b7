#include <cstdio>
#include <cstdlib>
#include <utility>

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <base/LogFile.h>
#include <base/Path.h>

namespace devicelog {

LogFile::LogFile(std::string path, long limit) : m_path(std::move(path)), m_limit(limit) {}

std::string LogFile::FindPath() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here changes the environment.
    const char* file = std::getenv("NORVEX_LOG");
    if (file != nullptr && *file != '\0')
        return file;
    const std::string state = sim::FindStateDirectory();
    if (state.empty())
        return {};
    sim::MakeDirectories(state + "/norvex");
    return state + "/norvex/norvex.log";
}

// The lock lets one process at a time rotate the file; a process that finds it rotated already only
// opens the new one. Without the lock the file grows on: a process that holds it may be stopped.
void LogFile::Rotate() {
    const int file = m_writer.GetDescriptor();
    if (flock(file, LOCK_EX | LOCK_NB) != 0)
        return;
    struct stat mine {};
    struct stat named {};
    if (fstat(file, &mine) == 0 && stat(m_path.c_str(), &named) == 0 && mine.st_ino == named.st_ino &&
        mine.st_dev == named.st_dev)
        // A file that cannot be renamed keeps being written.
        static_cast<void>(std::rename(m_path.c_str(), (m_path + ".1").c_str()));
    m_writer.Close();
    m_writer.Open(m_path);
}

bool LogFile::Append(std::string_view line) {
    if (m_path.empty())
        return false;
    if (!m_writer.IsOpen())
        m_writer.Open(m_path);
    struct stat status {};
    if (fstat(m_writer.GetDescriptor(), &status) == 0 && S_ISREG(status.st_mode) &&
        (status.st_size >= m_limit || status.st_nlink == 0))
        Rotate();
    return m_writer.Write(line);
}

} // namespace devicelog
