#include <iostream>
#include <vector>

#include <norvex/client/RectInfo.h>
#include <norvex/client/ZoomControl.h>

#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

constexpr char kTitle[] = "\t[Test19 List - IZoomControl]\t\n";
constexpr char kItems[] = " 1. Check if zoom available\n"
                          " 2. Check available zoom sharing type\n"
                          " 3. Create zoom window\n"
                          " 4. Delete zoom window\n"
                          " 5. Set zoom window (ON/OFF)\n"
                          " 6. Mute/unmute zoom window\n"
                          " 7. Check if zoom window started\n"
                          " 8. Check if zoom window muted\n"
                          " 9. Set zoom window src-dst\n"
                          " 10. Get connected zoom windows\n";

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_ZoomControlTest() {
    std::cout << framedMenu(kTitle, kItems) << std::endl;
}

// What is typed goes to the middleware unchanged; a word that is not a number goes as -1.
void TCDebugMenuTPMS::m_ZoomControlTest() {
    IZoomControl* created = nullptr;
    if (NorvexAPI::CreateZoomControl(PROFILE_MAIN, 0, &created) != 0) {
        std::cout << "ZoomControl interface creation failed!\n";
        return;
    }
    const TCSessionOwner<IZoomControl> zoom(created);

    while (true) {
        m_PrintMenu_ZoomControlTest();
        switch (m_SelectCmd("cmd> ")) {
        case -1: break;
        case 1: {
            bool available = false;
            const int result = zoom->IsZoomAvailable(available);
            std::cout << "Zoom available[" << available << "] API ret[" << result << "]\n";
            break;
        }
        case 2: {
            int type = 0;
            const int result = zoom->GetZoomSharingType(type);
            std::cout << "Zoom sharing available type[" << type << "] API ret[" << result << "]\n";
            break;
        }
        case 3: {
            int windowId = -1;
            const TSRectInfo source = m_AskSourceRect();
            const TSRectInfo destination = m_AskDestinationRect();
            const TSRectInfo main = m_AskMainRect();
            const int result = zoom->CreateZoomWindow(windowId, source, destination, main);
            std::cout << "Created window handle[" << windowId << "] API ret[" << result << "]\n";
            break;
        }
        case 4: {
            const std::vector<int> windowIds{m_SelectCmd("WindowId = ")};
            const TSRectInfo main = m_AskMainRect();
            const int result = zoom->DeleteZoomWindow(windowIds, main);
            std::cout << "Window destroy! API ret[" << result << "]\n";
            break;
        }
        case 5: {
            const std::vector<int> windowIds{m_SelectCmd("WindowId = ")};
            const bool on = m_SelectCmd("OnOff (1/0) = ") != 0;
            const int result = zoom->SetZoomWindow(windowIds, on);
            std::cout << "Window set! API ret[" << result << "]\n";
            break;
        }
        case 6: {
            const std::vector<int> windowIds{m_SelectCmd("WindowId = ")};
            const bool mute = m_SelectCmd("OnOff (1/0) = ") != 0;
            const int result = zoom->MuteZoomWindow(windowIds, mute);
            // Printed for unmuting too.
            std::cout << "Window muted! API ret[" << result << "]\n";
            break;
        }
        case 7: {
            const int windowId = m_SelectCmd("WindowId = ");
            bool started = false;
            const int result = zoom->IsZoomWindowStarted(windowId, started);
            std::cout << "Is window started[" << started << "] API ret[" << result << "]\n";
            break;
        }
        case 8: {
            const int windowId = m_SelectCmd("WindowId = ");
            bool muted = false;
            const int result = zoom->IsZoomWindowMuted(windowId, muted);
            std::cout << "Is window muted[" << muted << "] API ret[" << result << "]\n";
            break;
        }
        case 9: {
            const int windowId = m_SelectCmd("WindowId = ");
            const TSRectInfo source = m_AskSourceRect();
            const TSRectInfo destination = m_AskDestinationRect();
            const TSRectInfo main = m_AskMainRect();
            const int result = zoom->SetZoomWindowRect(windowId, source, destination, main);
            std::cout << "Window size updated! API ret[" << result << "]\n";
            break;
        }
        case 10: {
            std::vector<int> windowIds;
            const int result = zoom->GetConnectedZoomWindows(windowIds);
            // The unclosed bracket and the comma after the last id are meant.
            std::cout << "GetConnectedZoomWindows API ret[" << result << "\n";
            std::cout << "Connected window ids = [";
            for (const int windowId : windowIds) {
                std::cout << windowId << ", ";
            }
            std::cout << "]\n";
            break;
        }
        case 99: return;
        default: std::cout << "Unsupported command!\n"; break;
        }
    }
}

TSRectInfo TCDebugMenuTPMS::m_AskSourceRect() {
    TSRectInfo rect;
    rect.m_x = m_SelectCmd("SrcX = ");
    rect.m_y = m_SelectCmd("SrcY = ");
    rect.m_width = m_SelectCmd("SrcWidth = ");
    rect.m_height = m_SelectCmd("SrcHeight = ");
    return rect;
}

TSRectInfo TCDebugMenuTPMS::m_AskDestinationRect() {
    TSRectInfo rect;
    rect.m_x = m_SelectCmd("DstX = ");
    rect.m_y = m_SelectCmd("DstY = ");
    rect.m_width = m_SelectCmd("DstWidth = ");
    rect.m_height = m_SelectCmd("DstHeight = ");
    return rect;
}

TSRectInfo TCDebugMenuTPMS::m_AskMainRect() {
    TSRectInfo rect;
    rect.m_x = m_SelectCmd("MainX = ");
    rect.m_y = m_SelectCmd("MainY = ");
    rect.m_width = m_SelectCmd("MainWidth = ");
    rect.m_height = m_SelectCmd("MainHeight = ");
    return rect;
}
