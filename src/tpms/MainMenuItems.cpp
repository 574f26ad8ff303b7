#include "MainMenuItems.h"

#include <iostream>
#include <string>

#include <norvex/client/AVControl.h>
#include <norvex/client/DataControl.h>
#include <norvex/client/PipelineUtility.h>
#include <norvex/client/RectInfo.h>
#include <norvex/client/ServiceId.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/client/TunerControl.h>
#include <norvex/client/TvMode.h>
#include <norvex/client/VideoControl.h>

#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

// Prints nothing: it only shows that the call returns.
void checkCurrentTPMSStatus() {
    TCSessionOwner<IPipelineUtility> utility;
    NorvexAPI::CreatePipelineUtility(PROFILE_MAIN, 0, utility.out());
    TCTPMSStatus status;
    utility->GetCurrentTPMSStatus(&status);
}

void setTvModeToDTVAir() {
    TCSessionOwner<IServiceNavigation> navigation;
    NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, navigation.out());
    const TSTvMode tvMode(ANTENNA_AIR, SERVICE_MODE_DEFAULT);
    std::string text;
    if (navigation->SetTvMode(tvMode, text) < 1) {
        // No line end: the menu follows on the same line.
        std::cout << " SetTVMode failed!";
    }
}

void restartVideoDecoder() {
    TCSessionOwner<IAVControl> avControl;
    NorvexAPI::CreateAVControl(PROFILE_MAIN, 0, avControl.out());
    if (avControl.get() == nullptr) {
        return;
    }
    avControl->RestartVideoDecoder();
}

void checkTunerSignal() {
    TCSessionOwner<ITunerControl> tuner;
    NorvexAPI::CreateTunerControl(PROFILE_MAIN, 0, tuner.out());
    if (tuner->CheckTunerSignalState() >= 1) {
        std::cout << " CheckTunerSignalState Success!\n";
    } else {
        std::cout << " CheckTunerSignalState failed!\n";
    }
}

void printLatestServiceIds() {
    TCSessionOwner<IServiceNavigation> navigation;
    NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, navigation.out());
    // Set once: a call that stores nothing shows the number from the call before.
    unsigned long long serviceId = INVALID_SERVICE_ID;
    const TSTvMode air(ANTENNA_AIR, SERVICE_MODE_DEFAULT);
    const TSTvMode cable(ANTENNA_CABLE, SERVICE_MODE_DEFAULT);
    if (navigation.get() == nullptr) {
        return;
    }
    navigation->GetLatestServiceId(&serviceId, cable);
    std::cout << "[RF][CABLE] serviceId " << serviceId << std::endl;
    navigation->GetLatestVeldaServiceId(&serviceId, cable);
    std::cout << "[VELDA][CABLE] serviceId " << serviceId << std::endl;
    navigation->GetLatestServiceId(&serviceId, air);
    std::cout << "[RF][AIR] serviceId " << serviceId << std::endl;
    navigation->GetLatestVeldaServiceId(&serviceId, air);
    std::cout << "[VELDA][AIR] serviceId " << serviceId << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test15_SetCropVideoTest() {
    const TSRectInfo first(540, 380, 100, 100);
    const TSRectInfo second(1520, 680, 400, 400);
    TCSessionOwner<IVideoControl> videoControl;
    NorvexAPI::CreateVideoControl(PROFILE_CROP, 0, videoControl.out());
    videoControl->SetCropVideo(first, second);
}

void TCDebugMenuTPMS::m_Start_Test16_CheckCaptionExistTest() {
    std::cout << "Check Caption exist" << std::endl;
    TCSessionOwner<IDataControl> dataControl;
    NorvexAPI::CreateDataControl(PROFILE_MAIN, 0, dataControl.out());
    bool exists = false;
    dataControl->CheckCaptionExist(&exists);
    std::cout << "Caption exist:" << exists << std::endl;
}

bool TCDebugMenuTPMS::m_SetBootupService() {
    IServiceNavigation* created = nullptr;
    if (NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &created) != 0) {
        std::cout << "CreateServiceNavigation failed" << std::endl;
        return false;
    }
    TCSessionOwner<IServiceNavigation> navigation(created);

    const auto major = static_cast<std::uint16_t>(m_SelectCmd("major> "));
    if (major == 0xFFFF) {
        // Kept alive, here and below: it is destroyed only when the boot-up service was set.
        navigation.release();
        return false;
    }
    // Not checked: the id of no service is passed on unchanged.
    const std::uint64_t serviceId = m_GetServiceId(major);
    if (navigation->SetBootupService(serviceId, TSTvMode(), 0) <= 0) {
        std::cout << " SetBootupService failed!";
        navigation.release();
        return false;
    }
    return true;
}
