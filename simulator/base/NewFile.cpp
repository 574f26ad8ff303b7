#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <random>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <base/NewFile.h>

namespace sim {

namespace {

std::string GetDirectory(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::string MakeTemporaryName(const std::string& directory) {
    std::random_device random;
    std::string name = directory + ".new-";
    for (int count = 0; count < 4; ++count)
        name += std::to_string(random());
    return name;
}

bool FailWith(int number, std::string& error) {
    error = std::generic_category().message(number);
    return false;
}

} // namespace

NewFile::~NewFile() {
    if (m_file < 0)
        return;
    close(m_file);
    unlink(m_temporary.c_str());
}

bool NewFile::Open(const std::string& path, std::string& error) {
    struct stat old {};
    const bool replaces = lstat(path.c_str(), &old) == 0;
    if (!replaces && errno != ENOENT)
        return FailWith(errno, error);
    if (replaces && !S_ISREG(old.st_mode)) {
        error = "expected a regular file";
        return false;
    }
    if (replaces && access(path.c_str(), W_OK) != 0)
        return FailWith(errno, error);
    m_path = path;
    m_temporary = MakeTemporaryName(GetDirectory(path));
    m_file = open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (m_file < 0)
        return FailWith(errno, error);
    // The owner is kept where this user may give the file away.
    if (replaces && fchown(m_file, old.st_uid, old.st_gid) != 0 && errno != EPERM)
        return FailWith(errno, error);
    if (replaces && fchmod(m_file, old.st_mode & 0777) != 0)
        return FailWith(errno, error);
    return true;
}

bool NewFile::Write(std::string_view bytes, std::string& error) {
    while (!bytes.empty()) {
        const ssize_t written = write(m_file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return FailWith(errno, error);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool NewFile::Commit(std::string& error) {
    if (fsync(m_file) != 0 || rename(m_temporary.c_str(), m_path.c_str()) != 0)
        return FailWith(errno, error);
    close(m_file);
    m_file = -1;
    // The name as well; where a directory cannot be synced, the file system ensures it.
    const int directory = open(GetDirectory(m_path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        fsync(directory);
        close(directory);
    }
    return true;
}

} // namespace sim
