#include <iostream>

#include <norvex/client/ServiceNavigation.h>

#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

constexpr char kTitle[] = "\t[Test6 List - DTV Mode Test]\t\n";
constexpr char kItems[] = " 1. call IServiceNavigation::SetDTVMode(DTV_MODE_DEMUX_ONLY,true) \n"
                          " 2. call IServiceNavigation::SetDTVMode(DTV_MODE_DEMUX_ONLY,false) \n"
                          " 3. call IServiceNavigation::SetDTVMode(DTV_MODE_AUDIO_ONLY,true) \n"
                          " 4. call IServiceNavigation::SetDTVMode(DTV_MODE_AUDIO_ONLY,false) \n"
                          " 5. call IServiceNavigation::SetDTVMode(DTV_MODE_VIDEO_ONLY,true) \n"
                          " 6. call IServiceNavigation::SetDTVMode(DTV_MODE_VIDEO_ONLY,false) \n"
                          " 7. call IServiceNavigation::SetDTVMode(DTV_MODE_ALL,true) \n"
                          " 8. call IServiceNavigation::SetDTVMode(DTV_MODE_ALL,false) \n";

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test6_SetDTVMode() {
    std::cout << framedMenu(kTitle, kItems) << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test6_SetDTVMode() {
    TCSessionOwner<IServiceNavigation> navigation;
    NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, navigation.out());

    while (true) {
        m_PrintMenu_Test6_SetDTVMode();
        switch (m_SelectCmd("cmd> ")) {
        case -1: break;
        case 1: navigation->SetDTVMode(DTV_MODE_DEMUX_ONLY, true); break;
        case 2: navigation->SetDTVMode(DTV_MODE_DEMUX_ONLY, false); break;
        case 3: navigation->SetDTVMode(DTV_MODE_AUDIO_ONLY, true); break;
        case 4: navigation->SetDTVMode(DTV_MODE_AUDIO_ONLY, false); break;
        case 5: navigation->SetDTVMode(DTV_MODE_VIDEO_ONLY, true); break;
        case 6: navigation->SetDTVMode(DTV_MODE_VIDEO_ONLY, false); break;
        case 7: navigation->SetDTVMode(DTV_MODE_ALL, true); break;
        case 8: navigation->SetDTVMode(DTV_MODE_ALL, false); break;
        default: return;
        }
    }
}
