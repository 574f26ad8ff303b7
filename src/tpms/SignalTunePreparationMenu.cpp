#include <iostream>

#include <norvex/client/PipelineUtility.h>
#include <norvex/client/ServiceId.h>

#include "CallResult.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

// Its rules are wider than those of the other menus. The title says Test18, like that of the
// programme guide menu.
constexpr char kMenu[] = " ======================================================================================\n"
                         "\t      [Test18 List - SignalTunePreparationMechanism (AIR/CABLE/SAT)]\n"
                         " --------------------------------------------------------------------------------------\n"
                         " 1. call [Main Handle] RegisterForStateChange(STATE_CHANGE_SERVICE) (App1)\n"
                         " 2. call [Main Handle] NotifyReadyForSetService(STATE_CHANGE_SERVICE) (App1)\n"
                         " 3. call [Main Handle] UnregisterFromStateChange(STATE_CHANGE_SERVICE) (App1)\n"
                         " ======================================================================================\n"
                         " 4. call [Main Handle] RegisterForStateChange(STATE_CHANGE_SERVICE) (App2)\n"
                         " 5. call [Main Handle] NotifyReadyForSetService(STATE_CHANGE_SERVICE) (App2)\n"
                         " 6. call [Main Handle] UnregisterFromStateChange(STATE_CHANGE_SERVICE) (App2)\n"
                         " ======================================================================================\n"
                         " 7. call [Main Handle] CheckPendingState(STATE_CHANGE_SERVICE) \n"
                         " --------------------------------------------------------------------------------------\n"
                         " 99 : Exit\n"
                         " ======================================================================================\n";

} // namespace

void TCDebugMenuTPMS::m_PrintMenu_Test18_SignalTunePreparationMechanism() {
    std::cout << kMenu << std::endl;
}

void TCDebugMenuTPMS::m_Start_Test18_SignalTunePreparationMechanism() {
    TCSessionOwner<IPipelineUtility> utility;
    NorvexAPI::CreatePipelineUtility(PROFILE_MAIN, 0, utility.out());
    const std::string app1 = "org.plexa.sigtunepreptest1";
    const std::string app2 = "org.plexa.sigtunepreptest2";
    std::uint64_t serviceId = INVALID_SERVICE_ID;
    bool pending = false;

    bool left = false;
    while (!left) {
        m_PrintMenu_Test18_SignalTunePreparationMechanism();
        switch (m_SelectCmd("cmd> ")) {
        case 1:
            printCallResult("RegisterForStateChange (App1)",
                            utility->RegisterForStateChange(STATE_CHANGE_SERVICE, app1, 0));
            break;
        // The result lines of 2 and 5 name another operation than the menu; that is meant.
        case 2:
            if (m_AskServiceId(serviceId)) {
                printCallResult("NotifyReceiverState (App1)",
                                utility->NotifyReadyForSetService(STATE_CHANGE_SERVICE, app1, 1, serviceId));
            }
            break;
        case 3:
            printCallResult("UnregisterFromStateChange (App1)",
                            utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app1));
            break;
        case 4:
            printCallResult("RegisterForStateChange (App2)",
                            utility->RegisterForStateChange(STATE_CHANGE_SERVICE, app2, 0));
            break;
        case 5:
            if (m_AskServiceId(serviceId)) {
                printCallResult("NotifyReceiverState (App2)",
                                utility->NotifyReadyForSetService(STATE_CHANGE_SERVICE, app2, 1, serviceId));
            }
            break;
        case 6:
            printCallResult("UnregisterFromStateChange (App2)",
                            utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app2));
            break;
        case 7: {
            pending = false;
            const int result = utility->CheckPendingState(STATE_CHANGE_SERVICE, &pending);
            std::cout << "pending=" << pending << std::endl;
            printCallResult("CheckPendingState", result);
            break;
        }
        case 99: left = true; break;
        default: break;
        }
    }

    // Both are unregistered only while a change is pending, whether they registered or not;
    // otherwise registrations stay.
    pending = false;
    utility->CheckPendingState(STATE_CHANGE_SERVICE, &pending);
    if (pending) {
        utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app1);
        utility->UnregisterFromStateChange(STATE_CHANGE_SERVICE, app2);
    }
}

bool TCDebugMenuTPMS::m_AskServiceId(std::uint64_t& serviceId) {
    const int major = m_SelectCmd("Enter next channel major (int)> ");
    if (major == -1) {
        return false;
    }
    serviceId = m_GetServiceId(static_cast<std::uint16_t>(major));
    if (serviceId == INVALID_SERVICE_ID) {
        // Ends the line that the look-up began.
        std::cout << " for major=" << major << std::endl;
        return false;
    }
    std::cout << "major = " << major << " ,serviceId = " << serviceId << std::endl;
    return true;
}
