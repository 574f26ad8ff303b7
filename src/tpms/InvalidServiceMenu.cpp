#include <iostream>

#include <norvex/client/ServiceId.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/SourceControl.h>

#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

constexpr char kTitle[] = "\t[Test20 List - InvalidServiceTest]\t\n";
constexpr char kItems[] = " 1. SetService(INVALID_SERVICE_ID)\n"
                          " 2. SetSource(INVALID_SERVICE_ID)\n";

} // namespace

bool TCDebugMenuTPMS::m_InvalidServiceTest() {
    // Not owned yet: the navigation stays alive when creating the source control fails.
    IServiceNavigation* createdNavigation = nullptr;
    if (NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &createdNavigation) != 0) {
        std::cout << "CreateServiceNavigation failed" << std::endl;
        return false;
    }
    ISourceControl* createdSourceControl = nullptr;
    if (NorvexAPI::CreateSourceControl(PROFILE_MAIN, 0, &createdSourceControl) != 0) {
        std::cout << "CreateSourceControl failed" << std::endl;
        return false;
    }
    TCSessionOwner<IServiceNavigation> navigation(createdNavigation);
    TCSessionOwner<ISourceControl> sourceControl(createdSourceControl);

    while (true) {
        std::cout << framedMenu(kTitle, kItems) << std::endl;
        switch (m_SelectCmd("cmd> ")) {
        case -1: break;
        case 1: {
            std::string text;
            navigation->SetService(INVALID_SERVICE_ID, 0, 0, text);
            break;
        }
        case 2: {
            std::string text;
            sourceControl->SetSource(SOURCE_TV, INVALID_SERVICE_ID, text);
            break;
        }
        case 99:
            // Destroyed in the order of creation, here.
            navigation.reset();
            sourceControl.reset();
            return true;
        default:
            // Always -1, whatever was typed.
            std::cout << "unsupported command: " << -1 << std::endl;
            break;
        }
    }
}
