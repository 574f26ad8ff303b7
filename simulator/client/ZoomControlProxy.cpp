#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ZoomControl.h>

#include "SessionProxy.h"

namespace {

class ZoomControlProxy final : public SessionProxy<IZoomControl, interfaces::ZoomControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int CreateZoomWindow(int& windowId, const TSRectInfo& source, const TSRectInfo& destination,
                         const TSRectInfo& main) override {
        RemoteCall call(GetSession());
        call.Out(windowId);
        call.In(source);
        call.In(destination);
        call.In(main);
        return call.Make(Method::CreateZoomWindow);
    }

    int DeleteZoomWindow(const std::vector<int>& windowIds, const TSRectInfo& main) override {
        RemoteCall call(GetSession());
        call.In(windowIds);
        call.In(main);
        return call.Make(Method::DeleteZoomWindow);
    }

    int SetZoomWindow(std::vector<int> windowIds, bool on) override {
        RemoteCall call(GetSession());
        call.In(windowIds);
        call.In(on);
        return call.Make(Method::SetZoomWindow);
    }

    int MuteZoomWindow(std::vector<int> windowIds, bool mute) override {
        RemoteCall call(GetSession());
        call.In(windowIds);
        call.In(mute);
        return call.Make(Method::MuteZoomWindow);
    }

    int IsZoomWindowStarted(int windowId, bool& started) override {
        RemoteCall call(GetSession());
        call.In(windowId);
        Flag startedFlag(started);
        call.Out(startedFlag.byte);
        return call.Make(Method::IsZoomWindowStarted);
    }

    int IsZoomWindowMuted(int windowId, bool& muted) override {
        RemoteCall call(GetSession());
        call.In(windowId);
        Flag mutedFlag(muted);
        call.Out(mutedFlag.byte);
        return call.Make(Method::IsZoomWindowMuted);
    }

    int SetZoomWindowRect(int windowId, const TSRectInfo& source, const TSRectInfo& destination,
                          const TSRectInfo& main) override {
        RemoteCall call(GetSession());
        call.In(windowId);
        call.In(source);
        call.In(destination);
        call.In(main);
        return call.Make(Method::SetZoomWindowRect);
    }

    int IsZoomAvailable(bool& available) override {
        RemoteCall call(GetSession());
        Flag availableFlag(available);
        call.Out(availableFlag.byte);
        return call.Make(Method::IsZoomAvailable);
    }

    int GetZoomSharingType(int& type) override {
        RemoteCall call(GetSession());
        call.Out(type);
        return call.Make(Method::GetZoomSharingType);
    }

    int GetConnectedZoomWindows(std::vector<int>& windowIds) override {
        RemoteCall call(GetSession());
        call.Out(windowIds);
        return call.Make(Method::GetConnectedZoomWindows);
    }
};

} // namespace

int NorvexAPI::CreateZoomControl(EProfile profile, int screen, IZoomControl** zoomControl) {
    return CreateSession<ZoomControlProxy>(profile, screen, zoomControl);
}
