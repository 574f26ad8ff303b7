#include "MainMenuChecks.h"

#include <iostream>
#include <string>

#include <norvex/client/AVControl.h>
#include <norvex/client/PipelineUtility.h>
#include <norvex/client/ServiceId.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/client/TunerControl.h>
#include <norvex/client/TvMode.h>

#include "SessionOwner.h"

// Prints nothing: what it shows is that the call comes back.
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
        // No line end: the menu goes on behind it.
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
    // Set once: a call that leaves it alone shows the number of the call before.
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
