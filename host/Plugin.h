#pragma once

#include <string>

namespace host {

// A plug-in in memory, from Load until Close.
class TCPlugin {
public:
    TCPlugin() = default;
    ~TCPlugin();
    TCPlugin(const TCPlugin&) = delete;
    TCPlugin& operator=(const TCPlugin&) = delete;

    // Opens `library` (empty: the default one) and looks `entry` up. False where either fails, with
    // `reason` filled with one line.
    bool Load(const std::string& library, const std::string& entry, std::string& reason);

    // Runs the console; returns when the user leaves it.
    void Enter() const { m_Entry(); }

    void Close();

private:
    void* m_Handle = nullptr;
    void (*m_Entry)() = nullptr;
};

} // namespace host
