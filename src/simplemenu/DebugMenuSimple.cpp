#include "DebugMenuSimple.h"

#include <cstddef>
#include <iomanip>
#include <iostream>
#include <sstream>

#include <zarn/DebugServiceAPI.h>

#include "MenuText.h"

TCDebugMenuSimple::TCDebugMenuSimple() : m_pDebugPrintControl(nullptr) {
    m_menuItemList.clear();
    DebugServiceAPI::CreateService(&m_pDebugPrintControl);
}

TCDebugMenuSimple::~TCDebugMenuSimple() {
    DebugServiceAPI::Destroy();
}

void TCDebugMenuSimple::Enter() {
    while (true) {
        m_PrintMainMenu();
        std::cout << "cmd> " << std::flush;
        std::string word;
        std::cin >> word;
        // The stream stays failed: at end of input the menu repeats for ever.
        if (std::cin.fail())
            continue;

        bool ok = false;
        const int number = m_StrToInt(word, &ok);
        std::cout << number;
        if (!ok || number < 0)
            continue;
        // Checked before the exit, so that item 99 of a long list can be switched; such a list
        // cannot be left.
        if (number < static_cast<int>(m_menuItemList.size())) {
            TSMenuItem& item = m_menuItemList[static_cast<std::size_t>(number)];
            item.setState(!item.getState());
            m_pDebugPrintControl->SetMenuItem(item);
        } else if (number == 99) {
            return;
        }
    }
}

void TCDebugMenuSimple::m_PrintMainMenu() {
    m_menuItemList.clear();
    std::string menu = "\n";
    menu += kDoubleRule;
    menu += "     [Simple menu]\n";
    menu += kSingleRule;
    menu += m_infoQoS();
    m_menuItemList = m_pDebugPrintControl->GetMenuItems();
    int index = 0;
    for (TSMenuItem& item : m_menuItemList) {
        menu += m_MenuItem(item, index++);
        menu += "\n";
    }
    menu += kDoubleRule;
    menu += kExitRowAtTheEdge;
    menu += kDoubleRule;
    std::cout << menu;
}

std::string TCDebugMenuSimple::m_MenuItem(TSMenuItem& item, int index) {
    std::ostringstream row;
    row << std::left << std::setw(2) << index << ": [" << std::setw(3) << (item.getState() ? "ON" : "OFF") << "] "
        << std::setw(17) << item.getName();
    return row.str();
}

std::string TCDebugMenuSimple::m_infoQoS() {
    return m_pDebugPrintControl->IsQoSEnabled() ? "QoS is enabled\n" : "QoS is disabled\n";
}

int TCDebugMenuSimple::m_StrToInt(const std::string& text, bool* ok) {
    std::stringstream stream(text);
    int number = 0;
    stream >> number;
    if (ok != nullptr)
        *ok = !stream.fail();
    return number;
}

int TCDebugMenuSimple::m_SelectCmd(const std::string& prompt) {
    std::cout << prompt << std::flush;
    std::string word;
    std::cin >> word;
    if (std::cin.fail())
        return -1;
    bool ok = false;
    const int number = m_StrToInt(word, &ok);
    return ok ? number : -1;
}
