#include <iostream>

#include <norvex/client/PipelineUtility.h>
#include <norvex/client/ServiceId.h>

#include "MenuText.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

constexpr char kTitle[] = "\t[Test13 List - Preparation Logic Test]\t\n";
constexpr char kItems[] = " 1. call IPipelineUtilityl::RegisterForStateChange - STATE_CHANGE_SERVICE \n"
                          " 2. call IPipelineUtiltiyl::UnregisterFromStateChange  - STATE_CHANGE_SERVICE \n"
                          " 3. call IPipelineUtiltiyl::NotifyReceiverState - STATE_CHANGE_SERVICE \n"
                          " 4. call IPipelineUtiltiyl::CheckPendingState - STATE_CHANGE_SERVICE \n"
                          " ========================================================================= \n"
                          " 5. call IPipelineUtilityl::RegisterForStateChange - STATE_CHANGE_SOURCE \n"
                          " 6. call IPipelineUtiltiyl::UnregisterFromStateChange  - STATE_CHANGE_SOURCE \n"
                          " 7. call IPipelineUtiltiyl::NotifyReceiverState - STATE_CHANGE_SOURCE \n"
                          " 8. call IPipelineUtiltiyl::CheckPendingState - STATE_CHANGE_SOURCE \n";

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test13_PreparationLogicTest() {
    std::cout << framedMenu(kTitle, kItems) << std::endl;
}

// Prints nothing: the calls show in the middleware. A registration that is still in force when the
// user leaves ends with the utility, not with a call.
void TCDebugMenuTPMS::m_Start_Test13_PreparationLogicTest() {
    TCSessionOwner<IPipelineUtility> utility;
    NorvexAPI::CreatePipelineUtility(PROFILE_MAIN, 0, utility.out());
    const std::string receiver = "DebugMenuTPMS";

    while (true) {
        m_PrintMenu_Test13_PreparationLogicTest();
        switch (m_SelectCmd("cmd> ")) {
        case -1: break;
        case 1: utility->RegisterForStateChange(STATE_CHANGE_SERVICE, receiver, 0); break;
        case 2: utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, receiver); break;
        case 3: utility->NotifyReceiverState(STATE_CHANGE_SERVICE, receiver, 1, INVALID_SERVICE_ID); break;
        case 4: {
            bool pending = false;
            utility->CheckPendingState(STATE_CHANGE_SERVICE, &pending);
            break;
        }
        case 5: utility->RegisterForStateChange(STATE_CHANGE_SOURCE, receiver, 0); break;
        case 6: utility->UnregisterFromStateChange(STATE_CHANGE_SOURCE, receiver); break;
        case 7: utility->NotifyReceiverState(STATE_CHANGE_SOURCE, receiver, 1, INVALID_SERVICE_ID); break;
        case 8: {
            bool pending = false;
            utility->CheckPendingState(STATE_CHANGE_SOURCE, &pending);
            break;
        }
        default: return;
        }
    }
}
