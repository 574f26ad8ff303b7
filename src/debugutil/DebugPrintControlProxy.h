#pragma once

#include <string>
#include <vector>

#include <zarn/DebugPrintControl.h>

class NorvexAPIConnection;

// The debug print control of another process: every operation is one remote call over a connection
// of its own, made by the calling thread. Holds no state of the dialogue.
class TCDebugPrintControlProxy : public IDebugPrintControl {
public:
    // `interfaceName` is the remote interface that every call addresses. Does not connect yet.
    explicit TCDebugPrintControlProxy(const std::string& interfaceName);
    ~TCDebugPrintControlProxy() override;
    TCDebugPrintControlProxy(const TCDebugPrintControlProxy&) = delete;
    TCDebugPrintControlProxy& operator=(const TCDebugPrintControlProxy&) = delete;

    int Start(std::string& screen) override;
    int Execute(const std::string& command, std::string& screen) override;
    int Check(int& value) override;
    std::vector<TSMenuItem> GetMenuItems() override;
    bool SetMenuItems(const std::vector<TSMenuItem>& items) override;
    bool SetMenuItem(const TSMenuItem& item) override;
    bool SetQoSEnabled(bool enable) override;
    bool IsQoSEnabled() override;
    bool SetDebugMode(EDebugMode mode, bool enable) override;
    bool IsDebugModeEnabled(EDebugMode mode) override;
    int Stop() override;

private:
    std::string m_InterfaceName;
    // Owned. Null when there was no memory for it: every call then fails.
    NorvexAPIConnection* m_pNorvexConnection;
};
