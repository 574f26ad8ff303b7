#pragma once

#include <string>

#include "Screens.h"
#include "TPMSDebugMenu.h"

// The menus of the test console. In a scenario's dialogue "{menu}" is the menu's screen with its
// prompt, and "<1>" a word that is typed.
struct Menu {
    std::string name;
    // The main menu's number.
    std::string item;
    std::string screen;
    std::string prompt = "cmd> ";
    // Words typed on the way to the first screen, and the dialogue up to it.
    std::string way = {};
    std::string opening = {};
    // Words that leave, and the dialogue from the last screen on. The word that decides is "99".
    std::string leave = "99";
    std::string closing = {};
    // Prints the screen; null where only the menu itself does.
    void (TCDebugMenuTPMS::*print)() = nullptr;
};

inline const std::string kMainPipeline = "Input ScreenId. Main:0, MLS:1 > <0>"
                                         "User Input : screenId:0 profile:1\n";

inline const Menu kReferenceCount{
    .name = "ReferenceCount",
    .item = "1",
    .screen = screens::kReferenceCount,
    .way = "0",
    .opening = kMainPipeline + "{CreateReferenceCount(1, 0)}",
    .closing = "{menu}<99>{Destroy(ReferenceCount)}",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test1_ReferenceCount,
};

inline const Menu kMute{
    .name = "Mute",
    .item = "2",
    .screen = screens::kMute,
    .way = "0",
    .opening = kMainPipeline + "{CreateAVControl(1, 0)}",
    .leave = "99 0",
    .closing = "{menu}<99>Off:0 / On:1 <0>{Destroy(AVControl)}",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test2_MuteControl,
};

inline const Menu kHdmiAnalysis{
    .name = "HdmiAnalysis",
    .item = "3",
    .screen = screens::kHdmiAnalysis,
    .opening = "{CreateSourceControl(1, 0)}",
    .leave = "1 99",
    .closing = " [HDMI 1~6] select num> <1>{menu}<99>{Destroy(SourceControl)}",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test3_HDMIAnalysis,
};

inline const Menu kDtvMode{
    .name = "DtvMode",
    .item = "6",
    .screen = screens::kDtvMode,
    .opening = "{CreateServiceNavigation(1, 0)}",
    .closing = "{menu}<99>{Destroy(ServiceNavigation)}",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test6_SetDTVMode,
};

inline const Menu kSetSource{
    .name = "SetSource",
    .item = "7",
    .screen = screens::kSetSource,
    .prompt = " select num> ",
    .closing = "{menu}<99>",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test7_SetSource,
};

inline const Menu kPreparationLogic{
    .name = "PreparationLogic",
    .item = "12",
    .screen = screens::kPreparationLogic,
    .opening = "{CreatePipelineUtility(1, 0)}",
    .closing = "{menu}<99>{Destroy(PipelineUtility)}",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test13_PreparationLogicTest,
};

inline const Menu kSetTvMode{
    .name = "SetTvMode",
    .item = "13",
    .screen = screens::kSetTvMode,
    .leave = "99 1",
    .closing = "{menu}<99>major> <1>",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test14_SetTvModeTest,
};

inline const Menu kPreviewSource{
    .name = "PreviewSource",
    .item = "16",
    .screen = screens::kPreviewSource,
    .prompt = " select num> ",
    .closing = "{menu}<99>",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test17_SetPrevieSource,
};

inline const Menu kSignalTunePreparation{
    .name = "SignalTunePreparation",
    .item = "17",
    .screen = screens::kSignalTunePreparation,
    .opening = "{CreatePipelineUtility(1, 0)}",
    .closing = "{menu}<99>{PipelineUtility.CheckPendingState(0, false)}{Destroy(PipelineUtility)}",
    .print = &TCDebugMenuTPMS::m_PrintMenu_Test18_SignalTunePreparationMechanism,
};

inline const Menu kEpgDataFeeding{
    .name = "EpgDataFeeding",
    .item = "18",
    .screen = screens::kEpgDataFeeding,
    .opening = "{CreateScanControl()}{CreateServiceGuide()}{CreateServiceNavigation(1, 0)}",
    .closing = "{menu}<99>{Destroy(ServiceNavigation)}{Destroy(ServiceGuide)}{Destroy(ScanControl)}",
};

inline const Menu kZoomControl{
    .name = "ZoomControl",
    .item = "19",
    .screen = screens::kZoomControl,
    .opening = "{CreateZoomControl(1, 0)}",
    .closing = "{menu}<99>{Destroy(ZoomControl)}",
    .print = &TCDebugMenuTPMS::m_PrintMenu_ZoomControlTest,
};

inline const Menu kInvalidService{
    .name = "InvalidService",
    .item = "20",
    .screen = screens::kInvalidService,
    .opening = "{CreateServiceNavigation(1, 0)}{CreateSourceControl(1, 0)}",
    .closing = "{menu}<99>{Destroy(ServiceNavigation)}{Destroy(SourceControl)}",
};
