#pragma once

#include <string>
#include <string_view>

namespace sim {

// A file that appears at its path completely or not at all. An existing file stays until then, and
// the new one gets its mode and, where permitted, its owner. Each operation that fails sets `error`.
class NewFile {
public:
    NewFile() = default;
    // Without a commit nothing is left.
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    // The path must be a regular file that this user may write, or not exist.
    bool Open(const std::string& path, std::string& error);
    bool Write(std::string_view bytes, std::string& error);
    // Afterwards the file is on the disk, under its name.
    bool Commit(std::string& error);

private:
    std::string m_path;
    std::string m_temporary;
    int m_file = -1;
};

} // namespace sim
