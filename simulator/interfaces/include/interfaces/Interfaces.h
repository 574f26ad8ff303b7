#pragma once

#include <interfaces/InterfaceTable.h>

// The interfaces of the TV service and their operations: the only place that defines their names
// and numbers, for client and daemon.
//
// NORVEX_INTERFACE(AVControl, ...) stands for "com.holvi.IAVControl" and declares `enum class
// AVControlMethod`. An operation's number is its place: add new ones at the end. A suffix after '_'
// distinguishes overloads and is not part of the name. docs/wire-format.md documents them; its byte
// tests keep both consistent.
namespace interfaces {

NORVEX_INTERFACE(NorvexSession, Open, Close)

NORVEX_INTERFACE(SignalSubscriber, Subscribe, Unsubscribe)

NORVEX_INTERFACE(Device, GetInt, StartLogTag, StopLogTag)

// The plug-in has its own list of these eleven: it does not depend on the simulator.
NORVEX_INTERFACE(DebugPrintControl, Start, Execute, Stop, Check, GetMenuItems, SetMenuItems, SetMenuItem, SetQoSEnabled,
                 IsQoSEnabled, SetDebugMode, IsDebugModeEnabled)

NORVEX_INTERFACE(ReferenceCount, GetReferenceCount)

NORVEX_INTERFACE(AVControl, RestartVideoDecoder, MuteVideo, MuteAudio)

NORVEX_INTERFACE(VideoControl, SetCropVideo, SetWindowId)

NORVEX_INTERFACE(TunerControl, CheckTunerSignalState)

NORVEX_INTERFACE(DataControl, CheckCaptionExist)

NORVEX_INTERFACE(SourceControl, SetSource, SetSource_Service, PreSetSourceA, StartHDMIAnalysis, StopHDMIAnalysis,
                 PreSetSourceC, PreSetSourceB, SetPreviewSource, SetPreviewSource_Service)

NORVEX_INTERFACE(PipelineUtility, NotifyReceiverState, RegisterForStateChange, UnregisterFromStateChange,
                 CheckPendingState, GetCurrentTPMSStatus, NotifyReadyForSetService)

NORVEX_INTERFACE(ZoomControl, CreateZoomWindow, DeleteZoomWindow, SetZoomWindow, MuteZoomWindow, IsZoomWindowStarted,
                 IsZoomWindowMuted, SetZoomWindowRect, IsZoomAvailable, GetZoomSharingType, GetConnectedZoomWindows)

NORVEX_INTERFACE(Service, FindService)

NORVEX_INTERFACE(ServiceNavigation, GetTvMode, GetServiceList, SetTvMode, SetTvMode_Service, SetDTVMode, SetService,
                 SetBootupService, GetLatestVeldaServiceId, GetLatestServiceId)

NORVEX_INTERFACE(ServiceGuide, GetCurrentProgram)

NORVEX_INTERFACE(ScanControl, IsTuneAroundNeeded, StartTuneAround, StopManualScan, IsBarkerChannelScanAvailable,
                 StartBarkerChannelScan, StopBarkerChannelScan)

} // namespace interfaces
