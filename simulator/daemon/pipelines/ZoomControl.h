#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "Component.h"
#include "PipelineInterface.h"
#include "Rect.h"

namespace sim {

// com.holvi.IZoomControl: windows that show an enlarged part of a pipeline's picture.
//
// A window belongs to the client that made it, which alone may change or delete it, and goes with
// it; it outlives the session that it was made through. Everybody may ask about it.
class ZoomControl : public PipelineInterface, public Component {
public:
    static constexpr std::uint32_t kDefaultLimit = 4; // windows of the TV

    ZoomControl(Context& context, Pipelines& pipelines);

    const char* GetStateName() const override { return "zoom"; }
    nlohmann::json DescribeState() const override;
    bool Reset() override;
    void ReleaseClient(Client& client) override;

private:
    struct Window {
        Handle handle;
        std::uint32_t client = 0;
        Rect source;
        Rect destination;
        bool started = false;
        bool muted = false;
    };
    using Ids = std::vector<std::int32_t>;

    void CreateZoomWindow(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void DeleteZoomWindow(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetZoomWindow(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void MuteZoomWindow(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void IsZoomWindowStarted(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void IsZoomWindowMuted(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void SetZoomWindowRect(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void IsZoomAvailable(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void GetZoomSharingType(const Call& call, const ArgumentReader& in, ReplyWriter& out);
    void GetConnectedZoomWindows(const Call& call, const ArgumentReader& in, ReplyWriter& out);

    // Null, and a line in the log, when the call's pipeline has no such window.
    Window* Find(const Call& call, const char* operation, std::int32_t id);
    // kDone when all of them are windows of the caller in this pipeline, else a refusal.
    std::int32_t CheckOwn(const Call& call, const char* operation, const Ids& ids);
    std::int32_t CheckRects(const char* operation, std::initializer_list<Rect> rects);
    void SetFlag(const Call& call, const ArgumentReader& in, ReplyWriter& out,
                 const char* operation, bool Window::*flag);
    void GetFlag(const Call& call, const ArgumentReader& in, ReplyWriter& out,
                 const char* operation, bool Window::*flag);

    std::uint32_t m_limit = kDefaultLimit;
    std::int32_t m_lastId = 0;
    std::map<std::int32_t, Window> m_windows;
};

} // namespace sim
