#include <iostream>

#include <norvex/client/AVControl.h>

#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

// The title says Test1; the HDMI analysis menu has the same one.
constexpr char kTitle[] = "\t[Test1 List - Video Mute Control]\t\n";
constexpr char kItems[] = " 1. call IAVControl::MuteVudio \n"
                          " 2. call IAVControl::MuteAudio \n";

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test2_MuteControl() {
    std::cout << framedMenu(kTitle, kItems) << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test2_MuteControl() {
    NorvexHandle handle;
    m_GetNorvexHandleByUserInput(&handle, false);
    TCSessionOwner<IAVControl> avControl;
    NorvexAPI::CreateAVControl(handle.profile, handle.screenId, avControl.out());

    while (true) {
        m_PrintMenu_Test2_MuteControl();
        const int command = m_SelectCmd("cmd> ");
        if (command == -1) {
            continue;
        }
        // Asked for every command, even 99: leaving takes a number here too.
        const int value = m_SelectCmd("Off:0 / On:1 ");
        if (value == -1) {
            continue;
        }
        if (command == 1) {
            avControl->MuteVideo(value);
        } else if (command == 2) {
            avControl->MuteAudio(value);
        } else if (command == 99) {
            return;
        }
    }
}
