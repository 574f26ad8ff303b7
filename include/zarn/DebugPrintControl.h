#pragma once

#include <string>
#include <vector>

#include <zarn/MenuItem.h>

// A debug mode of the remote process. The process defines the numbers.
enum EDebugMode : int {};

// Handle on the debug printing of a middleware process: a text dialogue with the process's own
// debug menu, its switchable items, its QoS switch and debug modes. Obtained from DebugServiceAPI;
// used on the console's thread. Every operation is one remote call and blocks until it is answered
// or fails.
//
// The order of the operations is the order of the virtual table and must not change.
class IDebugPrintControl {
public:
    virtual ~IDebugPrintControl();

    // Opens the dialogue. Above 0: open, and `screen` holds the first screen. 0 or below: the
    // process's refusal; -1 also when the call failed. An empty screen in the reply leaves `screen`
    // unchanged.
    virtual int Start(std::string& screen) = 0;
    // Sends one typed word to the process. Above 0: the dialogue goes on with `screen`. Results as
    // for Start.
    virtual int Execute(const std::string& command, std::string& screen) = 0;
    // Fetches one number from the process into `value`. Results as for Start.
    virtual int Check(int& value) = 0;
    // The process's switches, in its order; empty when the call failed.
    virtual std::vector<TSMenuItem> GetMenuItems() = 0;
    // The setters: true when the call was answered, whatever the process did.
    virtual bool SetMenuItems(const std::vector<TSMenuItem>& items) = 0;
    virtual bool SetMenuItem(const TSMenuItem& item) = 0;
    virtual bool SetQoSEnabled(bool enable) = 0;
    // The queries: the process's answer; false when there was none.
    virtual bool IsQoSEnabled() = 0;
    virtual bool SetDebugMode(EDebugMode mode, bool enable) = 0;
    virtual bool IsDebugModeEnabled(EDebugMode mode) = 0;
    // Ends the dialogue. Results as for Start.
    virtual int Stop() = 0;
};
