#include <iostream>

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/Service.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/ServiceUtility.h>

#include "MenuText.h"
#include "ServiceRecord.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

// Title and items in one: this menu has no rule between them.
constexpr char kTitleAndItems[] = "\t[Test14 List - SetTvMode with ServiceId Test]\t\n"
                                  " RF case:    \n"
                                  " 1.  SetTvMode(Air, ch) \n"
                                  " 2.  SetTvMode(Cable, ch) \n"
                                  " 3.  SetTvMode(Satellite, ch) \n"
                                  " VC case:    \n"
                                  " 4.  SetTvMode(Air, ch) \n"
                                  " 5.  SetTvMode(Cable, ch) \n"
                                  " 6.  SetTvMode(Satellite, ch) \n";

std::string menuText() {
    std::string menu = kDoubleRule;
    menu += kTitleAndItems;
    menu += kSingleRule;
    menu += kExitRow;
    menu += kDoubleRule;
    return menu;
}

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test14_SetTvModeTest() {
    std::cout << menuText() << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test14_SetTvModeTest() {
    while (true) {
        m_PrintMenu_Test14_SetTvModeTest();
        const int command = m_SelectCmd("cmd> ");
        if (command == -1) {
            continue;
        }
        // Asked before the command is checked: leaving takes a channel too.
        const auto major = static_cast<std::uint16_t>(m_SelectCmd("major> "));
        if (major == 0xFFFF) {
            continue;
        }
        switch (command) {
        case 1: m_RunSetTvModeTest(ANTENNA_AIR, major, false); break;
        case 2: m_RunSetTvModeTest(ANTENNA_CABLE, major, false); break;
        case 3: m_RunSetTvModeTest(ANTENNA_SATELLITE, major, false); break;
        case 4: m_RunSetTvModeTest(ANTENNA_AIR, major, true); break;
        case 5: m_RunSetTvModeTest(ANTENNA_CABLE, major, true); break;
        case 6: m_RunSetTvModeTest(ANTENNA_SATELLITE, major, true); break;
        default: return;
        }
    }
}

void TCDebugMenuTPMS::m_RunSetTvModeTest(EAntennaMode antennaMode, std::uint16_t major, bool virtualChannel) {
    // Created, and so destroyed, in the opposite order to the look-ups.
    TCSessionOwner<IServiceNavigation> navigation;
    NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, navigation.out());
    TCSessionOwner<IService> service;
    NorvexAPI::CreateService(service.out());

    TSTvMode tvMode;
    navigation->GetTvMode(tvMode);
    const EServiceProfile profile =
        tvMode.m_serviceMode != SERVICE_MODE_DEFAULT ? SERVICE_PROFILE_OPERATOR : SERVICE_PROFILE_DEFAULT;
    tvMode.m_antennaMode = antennaMode;
    tvMode.m_serviceMode = TCServiceUtility::ServiceProfileToServiceMode(profile);

    TCCriteriaHelper query;
    query.Where(SERVICE_FIELD_PROFILE, profile);
    query.Where(SERVICE_FIELD_LISTED, 1);
    query.Where(SERVICE_FIELD_HIDDEN, 0);
    query.Where(SERVICE_FIELD_MAJOR, major);
    query.Fetch(SERVICE_FIELD_ID);
    TCServiceData record;
    // Read while still empty, on purpose: each run logs a missing field.
    std::uint64_t serviceId = serviceIdField(record);
    if (virtualChannel) {
        query.Where(SERVICE_FIELD_CHANNEL_TYPE, CHANNEL_TYPE_VIRTUAL);
        query.Where(SERVICE_FIELD_VIRTUAL_ANTENNA, antennaMode);
    } else {
        query.Where(SERVICE_FIELD_CHANNEL_TYPE, TCServiceUtility::AntennaModeToDigitalChannelType(antennaMode));
    }

    if (service->FindService(query, record, 1) <= 0) {
        // No line end, here and below: the menu follows on the same line.
        std::cout << "FindService failed";
        return;
    }
    serviceId = serviceIdField(record);
    std::string text;
    if (navigation->SetTvMode(tvMode, serviceId, text) <= 0) {
        std::cout << " SetTVMode failed!";
    }
}
