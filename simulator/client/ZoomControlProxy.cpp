#include "ZoomControlProxy.h"

#include "MarshalableIntegers.h"

int ZoomControlProxy::CreateZoomWindow(int& windowId, const TSRectInfo& source,
                                       const TSRectInfo& destination, const TSRectInfo& main) {
    RemoteCall call(GetSession());
    call.Out(windowId);
    call.InObject(source);
    call.InObject(destination);
    call.InObject(main);
    return call.Make("CreateZoomWindow", 0);
}

int ZoomControlProxy::DeleteZoomWindow(const std::vector<int>& windowIds, const TSRectInfo& main) {
    RemoteCall call(GetSession());
    MarshalableIntegers windowIdsArgument(windowIds);
    call.InObject(windowIdsArgument);
    call.InObject(main);
    return call.Make("DeleteZoomWindow", 1);
}

int ZoomControlProxy::SetZoomWindow(std::vector<int> windowIds, bool on) {
    RemoteCall call(GetSession());
    MarshalableIntegers windowIdsArgument(windowIds);
    call.InObject(windowIdsArgument);
    call.In(on);
    return call.Make("SetZoomWindow", 2);
}

int ZoomControlProxy::MuteZoomWindow(std::vector<int> windowIds, bool mute) {
    RemoteCall call(GetSession());
    MarshalableIntegers windowIdsArgument(windowIds);
    call.InObject(windowIdsArgument);
    call.In(mute);
    return call.Make("MuteZoomWindow", 3);
}

int ZoomControlProxy::IsZoomWindowStarted(int windowId, bool& started) {
    RemoteCall call(GetSession());
    call.In(windowId);
    Flag startedFlag(started);
    call.Out(startedFlag.byte);
    return call.Make("IsZoomWindowStarted", 4);
}

int ZoomControlProxy::IsZoomWindowMuted(int windowId, bool& muted) {
    RemoteCall call(GetSession());
    call.In(windowId);
    Flag mutedFlag(muted);
    call.Out(mutedFlag.byte);
    return call.Make("IsZoomWindowMuted", 5);
}

int ZoomControlProxy::SetZoomWindowRect(int windowId, const TSRectInfo& source,
                                        const TSRectInfo& destination, const TSRectInfo& main) {
    RemoteCall call(GetSession());
    call.In(windowId);
    call.InObject(source);
    call.InObject(destination);
    call.InObject(main);
    return call.Make("SetZoomWindowRect", 6);
}

int ZoomControlProxy::IsZoomAvailable(bool& available) {
    RemoteCall call(GetSession());
    Flag availableFlag(available);
    call.Out(availableFlag.byte);
    return call.Make("IsZoomAvailable", 7);
}

int ZoomControlProxy::GetZoomSharingType(int& type) {
    RemoteCall call(GetSession());
    call.Out(type);
    return call.Make("GetZoomSharingType", 8);
}

int ZoomControlProxy::GetConnectedZoomWindows(std::vector<int>& windowIds) {
    RemoteCall call(GetSession());
    MarshalableIntegers windowIdsArgument(windowIds);
    call.OutObject(windowIdsArgument);
    return call.Make("GetConnectedZoomWindows", 9);
}
