#pragma once

#include <string>

namespace host {

// A loaded plug-in, from Load until Close.
class Plugin {
public:
    Plugin() = default;
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // Loads `library` (empty: the default one) and looks up `entry`. False on failure, with one
    // line in `reason`.
    bool Load(const std::string& library, const std::string& entry, std::string& reason);

    // The library's file, as the loader has found it.
    std::string GetFile() const;

    // Runs the console; returns when the user leaves it.
    void Enter() const { m_entry(); }

    void Close();

private:
    void* m_handle = nullptr;
    void (*m_entry)() = nullptr;
};

} // namespace host
