#include <iostream>

#include <norvex/client/ServiceId.h>
#include <norvex/client/SourceControl.h>

#include "CallResult.h"
#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

constexpr char kTitle[] = "\t[Test17 List - SetPreviewSource]\t\n";
constexpr char kItems[] = " 1. call [Main Handle] ISourceControl::SetPreviewSource(ESource)  \n"
                          " 2. call [Main Handle] ISourceControl::SetPreviewSource(ESource, Major)  \n";

constexpr unsigned int kFirstSource = 0;
constexpr unsigned int kLastSource = 47;

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test17_SetPrevieSource() {
    std::cout << framedMenu(kTitle, kItems) << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test17_SetPrevieSource() {
    while (true) {
        m_PrintMenu_Test17_SetPrevieSource();
        const int command = m_SelectCmd(" select num> ");
        if (command == 99) {
            return;
        }
        if (command != 1 && command != 2) {
            continue;
        }
        const int source = m_SelectCmd("Enter ESource (TV=0, HDMI1=13)> ");
        if (source == -1) {
            continue;
        }
        if (static_cast<unsigned int>(source) > kLastSource) {
            std::cout << "Invalid source " << source << ". Valid values (" << kFirstSource << ", " << kLastSource << ")"
                      << std::endl;
            continue;
        }

        std::string text;
        if (command == 1) {
            TCSessionOwner<ISourceControl> sourceControl;
            NorvexAPI::CreateSourceControl(PROFILE_MAIN, 0, sourceControl.out());
            const int result = sourceControl->SetPreviewSource(static_cast<ESource>(source), text);
            sourceControl.reset();
            printCallResult("SetPreviewSource", result);
        } else {
            const int major = m_SelectCmd("Enter major (int)> ");
            if (major == -1) {
                continue;
            }
            const std::uint64_t serviceId = m_GetServiceId(ANTENNA_AIR, static_cast<std::uint16_t>(major));
            if (serviceId == INVALID_SERVICE_ID) {
                // Ends the line that the look-up began.
                std::cout << " for major=" << major << std::endl;
                continue;
            }
            TCSessionOwner<ISourceControl> sourceControl;
            NorvexAPI::CreateSourceControl(PROFILE_MAIN, 0, sourceControl.out());
            const int result = sourceControl->SetPreviewSource(static_cast<ESource>(source), serviceId, text);
            sourceControl.reset();
            printCallResult("SetPreviewSource", result);
        }
    }
}
