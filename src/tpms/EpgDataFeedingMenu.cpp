#include <algorithm>
#include <cerrno>
#include <ctime>
#include <iostream>

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/NavigationModeHelper.h>
#include <norvex/client/ProgramData.h>
#include <norvex/client/ScanControl.h>
#include <norvex/client/ServiceGuide.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/Signal.h>
#include <norvex/client/SignalSubscriber.h>

#include "MenuText.h"
#include "ServiceRecord.h"
#include "SessionOwner.h"
#include "TPMSDebugMenu.h"

namespace {

// The signal tune preparation menu also calls itself Test18.
constexpr char kTitle[] = "\t[Test18 List - Epg Data Feeding]\t\n";
constexpr char kItems[] = " 1. Check if programs available\n"
                          " 2. Is Tune Around Needed\n"
                          " 3. Start Tune Around\n"
                          " 4. Stop Tune Around\n"
                          " 5. Is Barker Channel scan available\n"
                          " 6. Start Barker Channel scan\n"
                          " 7. Stop Barker Channel scan\n";

// Lists the services, virtual channels included, whose present programme has a title.
void checkPrograms(IServiceNavigation& navigation, IServiceGuide& guide) {
    TCCriteriaHelper query;
    TCNavigationModeHelper::GetNavigationCriteria(NAVIGATION_ALL, query, NAVIGATION_SORT_DEFAULT);
    query.Fetch(SERVICE_FIELD_ID);
    query.Fetch(SERVICE_FIELD_FREQUENCY);
    query.Fetch(SERVICE_FIELD_MAJOR);
    query.Fetch(SERVICE_FIELD_MINOR);
    TSServiceRecords records;
    navigation.GetServiceList(query, records.m_list, TSTvMode(), 0, 0);

    unsigned short counted = 0;
    unsigned short title[256];
    for (const TCServiceData* const record : records.m_list) {
        const std::uint64_t serviceId = serviceIdField(*record);
        TCProgramData program;
        if (guide.GetCurrentProgram(serviceId, program) <= 0) {
            continue;
        }
        std::fill(std::begin(title), std::end(title), static_cast<unsigned short>(0));
        unsigned int length = 255;
        if (!program.Title(title, &length)) {
            continue;
        }
        ++counted;
        const int frequency = numberField(*record, SERVICE_FIELD_FREQUENCY);
        const int major = numberField(*record, SERVICE_FIELD_MAJOR);
        const int minor = numberField(*record, SERVICE_FIELD_MINOR);
        std::cout << "\tfreq:" << frequency << " -> " << major << "-" << minor << ": "
                  << "title size: " << length << std::endl;
    }
    std::cout << "\tno data in " << records.m_list.size() - counted << " programs" << std::endl;
}

// Gives the signals that follow a stop time to reach the callback.
void pauseForSignals() {
    timespec rest{0, 1000000};
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}

} // namespace

bool TCDebugMenuTPMS::m_EpgDataFeeding() {
    // Not owned yet: objects created before a failed creation stay alive.
    IScanControl* createdScan = nullptr;
    if (NorvexAPI::CreateScanControl(&createdScan) != 0) {
        std::cout << "CreateScanControl failed" << std::endl;
        return false;
    }
    IServiceGuide* createdGuide = nullptr;
    if (NorvexAPI::CreateServiceGuide(&createdGuide) != 0) {
        std::cout << "CreateServiceGuide failed" << std::endl;
        return false;
    }
    IServiceNavigation* createdNavigation = nullptr;
    if (NorvexAPI::CreateServiceNavigation(PROFILE_MAIN, 0, &createdNavigation) != 0) {
        std::cout << "CreateServiceNavigation failed" << std::endl;
        return false;
    }
    const TCSessionOwner<IScanControl> scan(createdScan);
    const TCSessionOwner<IServiceGuide> guide(createdGuide);
    const TCSessionOwner<IServiceNavigation> navigation(createdNavigation);

    while (true) {
        std::cout << framedMenu(kTitle, kItems) << std::endl;
        switch (m_SelectCmd("cmd> ")) {
        case -1: break;
        case 1: checkPrograms(*navigation.get(), *guide.get()); break;
        case 2: {
            std::list<std::pair<std::uint64_t, std::uint32_t>> services;
            if (!m_GetServiceList(services, navigation.get())) {
                break;
            }
            const int result = scan->IsTuneAroundNeeded(services);
            std::cout << "\tcalled IsTuneAroundNeeded, ret: " << result << std::endl;
            break;
        }
        case 3: {
            m_pSignalSubscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0);
            m_pSignalSubscriber->Subscribe(SIGNAL_TUNE_AROUND_SERVICE_DONE, 0, 702, 0, 0);
            m_pSignalSubscriber->Subscribe(SIGNAL_TUNE_AROUND_FINISHED, 0, 702, 0, 0);
            std::list<std::pair<std::uint64_t, std::uint32_t>> services;
            if (!m_GetServiceList(services, navigation.get())) {
                // The subscriptions stay.
                break;
            }
            const int result = scan->StartTuneAround(services, "DebugMenu");
            std::cout << "\tcalled StartTuneAround, ret: " << result << std::endl;
            break;
        }
        case 4: {
            // Stopping manual scans also ends a tune around.
            const int result = scan->StopManualScan();
            std::cout << "\tcalled StopManualScan, ret: " << result << std::endl;
            m_pSignalSubscriber->Unsubscribe(SIGNAL_SI_STARTED, 702, 0, 0);
            m_pSignalSubscriber->Unsubscribe(SIGNAL_TUNE_AROUND_SERVICE_DONE, 702, 0, 0);
            m_pSignalSubscriber->Unsubscribe(SIGNAL_TUNE_AROUND_FINISHED, 702, 0, 0);
            break;
        }
        case 5: {
            const int result = scan->IsBarkerChannelScanAvailable(TSTvMode());
            std::cout << "\tcalled IsBarkerChannelScanAvailable, ret: " << result << std::endl;
            break;
        }
        case 6: {
            m_pSignalSubscriber->Subscribe(SIGNAL_SI_STARTED, 0, 702, 0, 0);
            m_pSignalSubscriber->Subscribe(SIGNAL_BARKER_CHANNEL_TUNE, 0, 702, 0, 0);
            const int result = scan->StartBarkerChannelScan(std::string(), TSTvMode());
            std::cout << "\tcalled StartBarkerChannelScan, ret: " << result << std::endl;
            break;
        }
        case 7: {
            const int result = scan->StopBarkerChannelScan();
            std::cout << "\tcalled StopBarkerChannelScan, ret: " << result << std::endl;
            pauseForSignals();
            m_pSignalSubscriber->Unsubscribe(SIGNAL_SI_STARTED, 702, 0, 0);
            m_pSignalSubscriber->Unsubscribe(SIGNAL_BARKER_CHANNEL_TUNE, 702, 0, 0);
            break;
        }
        case 99: return true;
        default:
            // Always -1, whatever was typed.
            std::cout << "unsupported command: " << -1 << std::endl;
            break;
        }
    }
}
