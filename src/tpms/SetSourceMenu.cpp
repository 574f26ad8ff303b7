#include <iostream>

#include <norvex/client/SourceControl.h>
#include <norvex/client/VideoControl.h>

#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

constexpr char kTitle[] = "\t[Test7 List - SetSource]\t\n";
constexpr char kItems[] = " 1. call [Main Handle] ISourceControl::SetSource(TV Source)  \n"
                          " 2. call [Main Handle] ISourceControl::SetSource(HDMI1 Source)  \n"
                          " 3. call [PIP Handle] ISourceControl::SetSource(TV Source) \n"
                          " 4. call [Main Handle] ISourceControl::SetSource(Component1Source) \n"
                          " 5. call [Main Handle] ISourceControl::SetSource(TV Source, 0xfa0000000002002d) \n"
                          " 6. call [Clone Handle] ISourceControl::SetSource(TV Source) \n"
                          " 7. call [Clone Handle] ISourceControl::SetSource(HDMI Source) \n";

constexpr std::uint64_t kFixedServiceId = 0xfa0000000002002d;

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test7_SetSource() {
    std::cout << framedMenu(kTitle, kItems) << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test7_SetSource() {
    while (true) {
        m_PrintMenu_Test7_SetSource();
        switch (m_SelectCmd(" select num> ")) {
        case 99: return;
        case 2: m_SwitchSource(SOURCE_HDMI1); break;
        case 3: m_SwitchToService(PROFILE_PIP); break;
        case 4: m_SwitchSource(SOURCE_COMPONENT1); break;
        case 5: {
            TCSessionOwner<ISourceControl> sourceControl;
            NorvexAPI::CreateSourceControl(PROFILE_MAIN, 0, sourceControl.out());
            std::string text;
            sourceControl->SetSource(SOURCE_TV, kFixedServiceId, text);
            break;
        }
        case 6: m_SwitchToService(PROFILE_MAIN); break;
        case 7: {
            TCSessionOwner<ISourceControl> sourceControl;
            NorvexAPI::CreateSourceControl(PROFILE_MAIN, 0, sourceControl.out());
            sourceControl->PreSetSourceA();
            sourceControl->PreSetSourceB();
            sourceControl->PreSetSourceC();
            std::string text;
            sourceControl->SetSource(SOURCE_HDMI1, text);
            m_BindWindow(PROFILE_MAIN);
            break;
        }
        default:
            // Not only 1: everything that is not on the menu, including a word that is not a
            // number, switches to the TV.
            m_SwitchSource(SOURCE_TV);
            break;
        }
    }
}

void TCDebugMenuTPMS::m_SwitchSource(ESource source) {
    TCSessionOwner<ISourceControl> sourceControl;
    NorvexAPI::CreateSourceControl(PROFILE_MAIN, 0, sourceControl.out());
    std::string text;
    sourceControl->SetSource(source, text);
}

void TCDebugMenuTPMS::m_SwitchToService(EProfile profile) {
    TCSessionOwner<ISourceControl> sourceControl;
    NorvexAPI::CreateSourceControl(profile, 0, sourceControl.out());
    const auto major = static_cast<std::uint16_t>(m_SelectCmd("major> "));
    if (major == 0xFFFF) {
        return;
    }
    // Not checked: the id of no service is passed on unchanged.
    const std::uint64_t serviceId = m_GetServiceId(ANTENNA_AIR, major);
    sourceControl->PreSetSourceA();
    sourceControl->PreSetSourceB();
    sourceControl->PreSetSourceC();
    std::string text;
    sourceControl->SetSource(SOURCE_TV, serviceId, text);
    m_BindWindow(profile);
}

void TCDebugMenuTPMS::m_BindWindow(EProfile profile) {
    int windowId = 0;
    m_GetVconfInt("db/tv-viewer/window_id", &windowId);
    TCSessionOwner<IVideoControl> videoControl;
    NorvexAPI::CreateVideoControl(profile, 0, videoControl.out());
    videoControl->SetWindowId(&windowId);
}
