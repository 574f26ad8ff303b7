#pragma once

#include <norvex/client/ZoomControl.h>

#include "SessionProxy.h"

class ZoomControlProxy final : public SessionProxy<IZoomControl> {
public:
    using SessionProxy::SessionProxy;

    int CreateZoomWindow(int& windowId, const TSRectInfo& source, const TSRectInfo& destination,
                         const TSRectInfo& main) override;
    int DeleteZoomWindow(const std::vector<int>& windowIds, const TSRectInfo& main) override;
    int SetZoomWindow(std::vector<int> windowIds, bool on) override;
    int MuteZoomWindow(std::vector<int> windowIds, bool mute) override;
    int IsZoomWindowStarted(int windowId, bool& started) override;
    int IsZoomWindowMuted(int windowId, bool& muted) override;
    int SetZoomWindowRect(int windowId, const TSRectInfo& source, const TSRectInfo& destination,
                          const TSRectInfo& main) override;
    int IsZoomAvailable(bool& available) override;
    int GetZoomSharingType(int& type) override;
    int GetConnectedZoomWindows(std::vector<int>& windowIds) override;
};
