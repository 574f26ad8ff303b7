#include <iostream>

#include <norvex/client/SourceControl.h>

#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

// The title is the mute menu's; that is meant.
constexpr char kTitle[] = "\t[Test1 List - Video Mute Control]\t\n";
constexpr char kItems[] = " 1. call ISourceControl::StartHDMIAnalysis \n"
                          " 2. call ISourceControl::StopHDMIAnalysis \n";

// The prompt offers 1 to 6; 7 and 8 work too, and everything else is the first input.
ESource hdmiSource(int number) {
    switch (number) {
    case 2: return SOURCE_HDMI2;
    case 3: return SOURCE_HDMI3;
    case 4: return SOURCE_HDMI4;
    case 5: return SOURCE_HDMI5;
    case 6: return SOURCE_HDMI6;
    case 7: return SOURCE_HDMI7;
    case 8: return SOURCE_HDMI8;
    default: return SOURCE_HDMI1;
    }
}

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test3_HDMIAnalysis() {
    std::cout << framedMenu(kTitle, kItems) << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test3_HDMIAnalysis() {
    TCSessionOwner<ISourceControl> sourceControl;
    NorvexAPI::CreateSourceControl(PROFILE_MAIN, 0, sourceControl.out());

    while (true) {
        const ESource source = hdmiSource(m_SelectCmd(" [HDMI 1~6] select num> "));
        m_PrintMenu_Test3_HDMIAnalysis();
        const int command = m_SelectCmd("cmd> ");
        if (command == -1) {
            continue;
        }
        if (command == 1) {
            sourceControl->StartHDMIAnalysis(source);
        } else if (command == 2) {
            sourceControl->StopHDMIAnalysis(source);
        } else {
            return;
        }
    }
}
