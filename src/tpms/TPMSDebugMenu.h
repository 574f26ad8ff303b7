#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <utility>

#include <norvex/client/NorvexHandle.h>
#include <norvex/client/RectInfo.h>
#include <norvex/client/Source.h>
#include <norvex/client/TvMode.h>

class IServiceNavigation;
class ISignalSubscriber;

// Test console for the middleware's pipelines: menus on standard output, words from standard input.
// Each menu creates the middleware objects that it needs and destroys them before it returns,
// except where a comment says that it keeps one.
//
// All operations run on the caller's thread. While Enter() runs, a second thread iterates GLib's
// default main context, and the signals' lines are printed from there. Nothing is caught: an
// exception that leaves Enter() ends the process.
class TCDebugMenuTPMS {
public:
    // Makes no calls, so that it can run while the library is loaded.
    TCDebugMenuTPMS();

    // Runs the console until the user leaves it with "99". May be called again; never on two
    // threads at once.
    void Enter();

    void m_PrintMainMenu();

    // The number that `text` begins with; what follows its digits is ignored. `ok` (may be null) is
    // false when there is none, or one that an int cannot hold.
    int m_StrToInt(const std::string& text, bool* ok);
    // Asks for a word with `prompt`. -1 when it is not a number or cannot be read.
    int m_SelectCmd(const std::string& prompt);
    // Asks for a screen and, with `askProfile`, a profile; without, it is the main one.
    void m_GetNorvexHandleByUserInput(NorvexHandle* handle, bool askProfile);
    // Reads the device's key-value store. 0 on success.
    int m_GetVconfInt(const char* key, int* value);

    void m_PrintMenu_Test1_ReferenceCount();
    void m_Start_Test1_ReferenceCount();
    void m_PrintMenu_Test2_MuteControl();
    void m_Start_Test2_MuteControl();
    void m_PrintMenu_Test3_HDMIAnalysis();
    void m_Start_Test3_HDMIAnalysis();
    void m_PrintMenu_Test6_SetDTVMode();
    void m_Start_Test6_SetDTVMode();
    void m_PrintMenu_Test7_SetSource();
    void m_Start_Test7_SetSource();
    void m_PrintMenu_Test13_PreparationLogicTest();
    void m_Start_Test13_PreparationLogicTest();
    void m_PrintMenu_Test14_SetTvModeTest();
    void m_Start_Test14_SetTvModeTest();
    void m_Start_Test15_SetCropVideoTest();
    void m_Start_Test16_CheckCaptionExistTest();
    void m_PrintMenu_Test17_SetPrevieSource();
    void m_Start_Test17_SetPrevieSource();
    void m_PrintMenu_Test18_SignalTunePreparationMechanism();
    void m_Start_Test18_SignalTunePreparationMechanism();
    // True when the user left it; false when a middleware object could not be created.
    bool m_EpgDataFeeding();
    void m_PrintMenu_ZoomControlTest();
    void m_ZoomControlTest();
    // Results as for m_EpgDataFeeding.
    bool m_InvalidServiceTest();
    // True when the boot-up service was set.
    bool m_SetBootupService();

    // Switches the TV mode together with the service that has channel number `major`; a virtual
    // channel is looked for when `virtualChannel` is set.
    void m_RunSetTvModeTest(EAntennaMode antennaMode, std::uint16_t major, bool virtualChannel);

    // Appends the services of the current channel list, virtual channels left out, to `services`,
    // each with code 5. False, and a line printed, when there is none. The caller owns
    // `navigation`.
    bool m_GetServiceList(std::list<std::pair<std::uint64_t, std::uint32_t>>& services, IServiceNavigation* navigation);
    // The broadcast service with channel number `major` on that antenna, in the current service
    // profile. INVALID_SERVICE_ID, and words without a line end printed, when there is none.
    std::uint64_t m_GetServiceId(EAntennaMode antennaMode, std::uint16_t major);
    // The same on any antenna and in any service profile.
    std::uint64_t m_GetServiceId(std::uint16_t major);

private:
    // Runs one item of the main menu by its number.
    void m_RunMainItem(int command);
    // Steps of the source menu: the main pipeline to a source; a pipeline to a service that the
    // user enters; a pipeline's picture to the TV viewer's window.
    void m_SwitchSource(ESource source);
    void m_SwitchToService(EProfile profile);
    void m_BindWindow(EProfile profile);
    // Asks for a channel in the signal tune preparation menu. False when there is no service to
    // call the middleware with.
    bool m_AskServiceId(std::uint64_t& serviceId);
    // Rectangles of the zoom menu, entered number by number.
    TSRectInfo m_AskSourceRect();
    TSRectInfo m_AskDestinationRect();
    TSRectInfo m_AskMainRect();

    // Set and owned by the middleware; valid while Enter() runs.
    ISignalSubscriber* m_pSignalSubscriber;
};
