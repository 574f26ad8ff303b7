#include <norvex/client/NorvexAPI.h>
#include <norvex/client/ZoomControl.h>

#include "SessionProxy.h"

namespace {

class ZoomControlProxy final : public SessionProxy<IZoomControl, interfaces::ZoomControlMethod> {
public:
    using SessionProxy::SessionProxy;

    int CreateZoomWindow(int& windowId, const TSRectInfo& source, const TSRectInfo& destination,
                         const TSRectInfo& main) override {
        return Call(Method::CreateZoomWindow).Out(windowId).In(source).In(destination).In(main).Make();
    }

    int DeleteZoomWindow(const std::vector<int>& windowIds, const TSRectInfo& main) override {
        return Call(Method::DeleteZoomWindow).In(windowIds).In(main).Make();
    }

    int SetZoomWindow(std::vector<int> windowIds, bool on) override {
        return Call(Method::SetZoomWindow).In(windowIds).In(on).Make();
    }

    int MuteZoomWindow(std::vector<int> windowIds, bool mute) override {
        return Call(Method::MuteZoomWindow).In(windowIds).In(mute).Make();
    }

    int IsZoomWindowStarted(int windowId, bool& started) override {
        return Call(Method::IsZoomWindowStarted).In(windowId).Out(started).Make();
    }

    int IsZoomWindowMuted(int windowId, bool& muted) override {
        return Call(Method::IsZoomWindowMuted).In(windowId).Out(muted).Make();
    }

    int SetZoomWindowRect(int windowId, const TSRectInfo& source, const TSRectInfo& destination,
                          const TSRectInfo& main) override {
        return Call(Method::SetZoomWindowRect).In(windowId).In(source).In(destination).In(main).Make();
    }

    int IsZoomAvailable(bool& available) override { return Call(Method::IsZoomAvailable).Out(available).Make(); }

    int GetZoomSharingType(int& type) override { return Call(Method::GetZoomSharingType).Out(type).Make(); }

    int GetConnectedZoomWindows(std::vector<int>& windowIds) override {
        return Call(Method::GetConnectedZoomWindows).Out(windowIds).Make();
    }
};

} // namespace

int NorvexAPI::CreateZoomControl(EProfile profile, int screen, IZoomControl** zoomControl) {
    return CreateSession<ZoomControlProxy>(profile, screen, zoomControl);
}
