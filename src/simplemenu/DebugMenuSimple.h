#pragma once

#include <string>
#include <vector>

#include <zarn/DebugPrintControl.h>

// A console over the shared debug print control: lists its items with their states and the QoS
// state, and switches an item by its number. Runs on the thread that calls Enter.
class TCDebugMenuSimple {
public:
    // Creates the shared control.
    TCDebugMenuSimple();
    // Deletes the shared control; every pointer to it dangles from then on.
    ~TCDebugMenuSimple();
    TCDebugMenuSimple(const TCDebugMenuSimple&) = delete;
    TCDebugMenuSimple& operator=(const TCDebugMenuSimple&) = delete;

    // Reads and runs numbers until the user leaves with 99.
    void Enter();
    // Fetches the items again and prints the whole menu.
    void m_PrintMainMenu();
    // One item's row, without a line end.
    std::string m_MenuItem(TSMenuItem& item, int index);
    // The QoS row, with its line end.
    std::string m_infoQoS();
    // The number that `text` begins with. `ok` (may be null) is true when there is one that fits;
    // the result is 0 when there is none and the exceeded limit when it does not fit.
    int m_StrToInt(const std::string& text, bool* ok);
    // Prints `prompt`, reads one word and returns its number; -1 when there is none.
    int m_SelectCmd(const std::string& prompt);

private:
    IDebugPrintControl* m_pDebugPrintControl;
    // As last printed: an item's position is the number that the user types.
    std::vector<TSMenuItem> m_menuItemList;
};
