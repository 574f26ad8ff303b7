#pragma once

#include <string>
#include <string_view>

namespace sim {

// A file that appears at its path as a whole or not at all. An old one of that name stays until then, and hands on its
// mode. Each operation that fails says why in `error`.
class NewFile {
public:
    NewFile() = default;
    // What was not committed leaves nothing.
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    // At the path there is a regular file, or nothing.
    bool Open(const std::string& path, std::string& error);
    bool Write(std::string_view bytes, std::string& error);
    // On the disk from then on, under its name.
    bool Commit(std::string& error);

private:
    std::string m_path;
    std::string m_temporary;
    int m_file = -1;
};

} // namespace sim
