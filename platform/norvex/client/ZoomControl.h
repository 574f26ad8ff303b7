#pragma once

#include <vector>

#include <norvex/client/NorvexSession.h>
#include <norvex/client/RectInfo.h>

// Zoom windows: enlarged parts of the main picture. `source` is a part of the picture,
// `destination` the window's place on the screen, `main` the main picture's.
class NORVEX_API IZoomControl : public INorvexSession {
public:
    virtual int CreateZoomWindow(int& windowId, const TSRectInfo& source, const TSRectInfo& destination,
                                 const TSRectInfo& main) = 0;
    virtual int DeleteZoomWindow(const std::vector<int>& windowIds, const TSRectInfo& main) = 0;
    virtual int SetZoomWindow(std::vector<int> windowIds, bool on) = 0;
    virtual int MuteZoomWindow(std::vector<int> windowIds, bool mute) = 0;
    virtual int IsZoomWindowStarted(int windowId, bool& started) = 0;
    virtual int IsZoomWindowMuted(int windowId, bool& muted) = 0;
    virtual int SetZoomWindowRect(int windowId, const TSRectInfo& source, const TSRectInfo& destination,
                                  const TSRectInfo& main) = 0;
    virtual int IsZoomAvailable(bool& available) = 0;
    virtual int GetZoomSharingType(int& type) = 0;
    virtual int GetConnectedZoomWindows(std::vector<int>& windowIds) = 0;
};
