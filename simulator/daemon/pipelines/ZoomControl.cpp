#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <map>
#include <vector>

#include <base/Number.h>
#include <nlohmann/json.hpp>

#include "Component.h"
#include "PipelineComponents.h"
#include "PipelineInterface.h"
#include "Rect.h"
#include "Results.h"
#include "ValueJson.h"

namespace sim {

using nlohmann::json;

namespace {

constexpr std::uint32_t kMaxWindowLimit = 64;

// How a further window would get its picture.
enum SharingType : std::int32_t {
    kNoWindowLeft = 0,
    kFromMainPicture = 1,   // it would be the pipeline's first
    kSharedWithWindows = 2, // with the pipeline's existing ones
};

// IZoomControl: windows that show an enlarged part of a pipeline's picture.
//
// A window belongs to the client that created it; only that client may change or delete it, and it
// ends with the client, not with the session. All clients may query it.
class ZoomControl : public PipelineInterface, public Component {
public:
    using Method = interfaces::ZoomControlMethod;

    static constexpr std::uint32_t kDefaultLimit = 4; // windows on the TV

    ZoomControl(Context& context, Pipelines& pipelines)
        : PipelineInterface(interfaces::kTable<Method>, context, pipelines), m_changes(context.changes) {
        Add(Method::CreateZoomWindow,
            {Out("status", kInt), Out("windowId", kInt), In("source", kRect), In("destination", kRect),
             In("main", kRect)},
            &ZoomControl::CreateZoomWindow);
        Add(Method::DeleteZoomWindow, {Out("status", kInt), In("windowIds", kIntList), In("main", kRect)},
            &ZoomControl::DeleteZoomWindow);
        Add(Method::SetZoomWindow, {Out("status", kInt), In("windowIds", kIntList), In("on", kBool)},
            &ZoomControl::SetZoomWindow);
        Add(Method::MuteZoomWindow, {Out("status", kInt), In("windowIds", kIntList), In("mute", kBool)},
            &ZoomControl::MuteZoomWindow);
        Add(Method::IsZoomWindowStarted, {Out("status", kInt), In("windowId", kInt), Out("started", kBool)},
            &ZoomControl::IsZoomWindowStarted);
        Add(Method::IsZoomWindowMuted, {Out("status", kInt), In("windowId", kInt), Out("muted", kBool)},
            &ZoomControl::IsZoomWindowMuted);
        Add(Method::SetZoomWindowRect,
            {Out("status", kInt), In("windowId", kInt), In("source", kRect), In("destination", kRect),
             In("main", kRect)},
            &ZoomControl::SetZoomWindowRect);
        Add(Method::IsZoomAvailable, {Out("status", kInt), Out("available", kBool)}, &ZoomControl::IsZoomAvailable);
        Add(Method::GetZoomSharingType, {Out("status", kInt), Out("type", kInt)}, &ZoomControl::GetZoomSharingType);
        Add(Method::GetConnectedZoomWindows, {Out("status", kInt), Out("windowIds", kIntList)},
            &ZoomControl::GetConnectedZoomWindows);
        context.settings.Add("zoom-limit", "NUMBER: maximum number of zoom windows, 0 to 64",
                             [this](const auto& values, auto&) {
                                 std::uint32_t limit = 0;
                                 if (values.size() != 1 || !ParseNumber(values[0], limit) || limit > kMaxWindowLimit)
                                     return false;
                                 m_limit = limit;
                                 return true;
                             });
    }

    const char* GetStateName() const override { return "zoom"; }
    json DescribeState() const override {
        json windows = json::object();
        for (const auto& [id, window] : m_windows) {
            windows[std::to_string(id)] = {
                {"pipeline", window.handle.ToText()}, {"client", window.client},
                {"source", ToJson(window.source)},    {"destination", ToJson(window.destination)},
                {"started", window.started},          {"muted", window.muted}};
        }
        return {{"limit", m_limit}, {"windows", windows}};
    }

    // Ids are not reused: a client may still know an old one.
    bool Reset() override {
        m_windows.clear();
        m_limit = kDefaultLimit;
        return true;
    }

    void ReleaseClient(Client& client) override {
        for (auto entry = m_windows.begin(); entry != m_windows.end();) {
            if (entry->second.client != client.GetNumber()) {
                ++entry;
                continue;
            }
            const Handle handle = entry->second.handle;
            m_log.Write("tvfpaparser", "window %d removed with client %" PRIu32, entry->first, client.GetNumber());
            m_changes.Mark("/zoom/windows");
            entry = m_windows.erase(entry);
            // No client is left to restore the main picture.
            if (!HasWindow(handle))
                m_pipelines.ResetMainPicture(handle);
        }
    }

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

    void CreateZoomWindow(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const auto source = in.Value<Rect>(2);
        const auto destination = in.Value<Rect>(3);
        const auto main = in.Value<Rect>(4);
        const std::int32_t status = CheckRects("CreateZoomWindow", {source, destination, main});
        if (status != kDone)
            return out.Int(0, status);
        if (m_windows.size() >= m_limit)
            return out.Int(0,
                           m_log.Refuse(kTooMany, "tvfpaparser",
                                        "CreateZoomWindow refused: there are %zu windows already", m_windows.size()));
        const std::int32_t id = ++m_lastId;
        m_changes.Mark("/zoom/windows");
        m_windows[id] = {HandleOf(call), call.client.GetNumber(), source, destination};
        ToChange(call).mainPicture = main;
        m_log.Write("tvfpaparser", "window %d of pipeline %s: %s", id, HandleOf(call).ToText().c_str(),
                    DescribeRect(destination).c_str());
        NoteWindows(HandleOf(call));
        out.Int(0, kDone);
        out.Int(1, id);
    }

    // All of them or none.
    void DeleteZoomWindow(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const auto ids = in.Value<Ids>(1);
        const auto main = in.Value<Rect>(2);
        std::int32_t status = CheckOwn(call, "DeleteZoomWindow", ids);
        if (status == kDone)
            status = CheckRects("DeleteZoomWindow", {main});
        if (status == kDone) {
            ToChange(call).mainPicture = main;
            for (const std::int32_t id : ids) {
                m_changes.Mark("/zoom/windows");
                if (m_windows.erase(id) > 0)
                    m_log.Write("tvfpaparser", "window %d deleted", id);
            }
            NoteWindows(HandleOf(call));
        }
        out.Int(0, status);
    }

    void SetZoomWindow(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        SetFlag(call, in, out, "SetZoomWindow", &Window::started);
    }

    void MuteZoomWindow(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        SetFlag(call, in, out, "MuteZoomWindow", &Window::muted);
    }

    void IsZoomWindowStarted(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        GetFlag(call, in, out, "IsZoomWindowStarted", &Window::started);
    }

    void IsZoomWindowMuted(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        GetFlag(call, in, out, "IsZoomWindowMuted", &Window::muted);
    }

    void SetZoomWindowRect(const Call& call, const ArgumentReader& in, ReplyWriter& out) {
        const std::int32_t id = in.Int(1);
        const auto source = in.Value<Rect>(2);
        const auto destination = in.Value<Rect>(3);
        const auto main = in.Value<Rect>(4);
        std::int32_t status = CheckOwn(call, "SetZoomWindowRect", {id});
        if (status == kDone)
            status = CheckRects("SetZoomWindowRect", {source, destination, main});
        if (status == kDone) {
            m_changes.Mark("/zoom/windows");
            Window& window = m_windows.at(id);
            window.source = source;
            window.destination = destination;
            ToChange(call).mainPicture = main;
            m_log.Write("tvfpaparser", "window %d: %s", id, DescribeRect(destination).c_str());
            NoteWindows(HandleOf(call));
        }
        out.Int(0, status);
    }

    void IsZoomAvailable(const Call&, const ArgumentReader&, ReplyWriter& out) {
        out.Int(0, kDone);
        out.Bool(1, m_windows.size() < m_limit);
    }

    void GetZoomSharingType(const Call& call, const ArgumentReader&, ReplyWriter& out) {
        out.Int(0, kDone);
        if (m_windows.size() >= m_limit)
            out.Int(1, kNoWindowLeft);
        else
            out.Int(1, HasWindow(HandleOf(call)) ? kSharedWithWindows : kFromMainPicture);
    }

    void GetConnectedZoomWindows(const Call& call, const ArgumentReader&, ReplyWriter& out) {
        Ids ids;
        for (const auto& [id, window] : m_windows) {
            if (window.handle == HandleOf(call))
                ids.push_back(id);
        }
        out.Int(0, kDone);
        out.Value(1, ids);
    }

    // Writes the pipeline's windows for the debug menu.
    void NoteWindows(const Handle& handle) {
        if (!m_log.IsOn(Debug::ZoomWindows))
            return;
        const auto& main = m_pipelines.At(handle).mainPicture;
        m_log.WriteDebug(Debug::ZoomWindows, "pipeline %s: main picture %s", handle.ToText().c_str(),
                         main ? DescribeRect(*main).c_str() : "whole");
        for (const auto& [id, window] : m_windows) {
            if (window.handle == handle)
                m_log.WriteDebug(Debug::ZoomWindows, "window %d: %s of the picture at %s%s%s", id,
                                 DescribeRect(window.source).c_str(), DescribeRect(window.destination).c_str(),
                                 window.started ? ", started" : "", window.muted ? ", muted" : "");
        }
    }

    bool HasWindow(const Handle& handle) const {
        return std::any_of(m_windows.begin(), m_windows.end(),
                           [&](const auto& entry) { return entry.second.handle == handle; });
    }

    // Null, with a line in the log, if the call's pipeline has no such window.
    ZoomControl::Window* Find(const Call& call, const char* operation, std::int32_t id) {
        const auto found = m_windows.find(id);
        if (found != m_windows.end() && found->second.handle == HandleOf(call))
            return &found->second;
        m_log.Write("tvfpaparser", "%s refused: pipeline %s has no window %d", operation,
                    HandleOf(call).ToText().c_str(), id);
        return nullptr;
    }

    // kDone if all of them are the caller's windows of this pipeline, else a refusal.
    std::int32_t CheckOwn(const Call& call, const char* operation, const Ids& ids) {
        if (ids.empty())
            return m_log.Refuse(kBadArgument, "tvfpaparser", "%s refused: no window ids", operation);
        if (ids.size() > kMaxWindowLimit)
            return m_log.Refuse(kBadArgument, "tvfpaparser", "%s refused: %zu window ids, expected at most %" PRIu32,
                                operation, ids.size(), kMaxWindowLimit);
        for (const std::int32_t id : ids) {
            const Window* window = Find(call, operation, id);
            if (window == nullptr)
                return kUnknown;
            if (window->client != call.client.GetNumber())
                return m_log.Refuse(kRefused, "tvfpaparser", "%s refused: window %d belongs to client %" PRIu32,
                                    operation, id, window->client);
        }
        return kDone;
    }

    std::int32_t CheckRects(const char* operation, std::initializer_list<Rect> rects) {
        for (const Rect& rect : rects) {
            if (IsOnScreen(rect))
                continue;
            return m_log.Refuse(kBadArgument, "tvfpaparser", "%s refused: %s is not on the screen", operation,
                                DescribeRect(rect).c_str());
        }
        return kDone;
    }

    void SetFlag(const Call& call, const ArgumentReader& in, ReplyWriter& out, const char* operation,
                 bool Window::*flag) {
        const auto ids = in.Value<Ids>(1);
        const bool on = in.Bool(2);
        const std::int32_t status = CheckOwn(call, operation, ids);
        if (status == kDone) {
            for (const std::int32_t id : ids) {
                m_changes.Mark("/zoom/windows");
                m_windows.at(id).*flag = on;
                m_log.Write("tvfpaparser", "%s: window %d, %s", operation, id, on ? "on" : "off");
            }
            NoteWindows(HandleOf(call));
        }
        out.Int(0, status);
    }

    void GetFlag(const Call& call, const ArgumentReader& in, ReplyWriter& out, const char* operation,
                 bool Window::*flag) {
        const Window* window = Find(call, operation, in.Int(1));
        if (window == nullptr)
            return out.Int(0, kUnknown);
        out.Int(0, kDone);
        out.Bool(2, window->*flag);
    }

    Changes& m_changes;
    std::uint32_t m_limit = kDefaultLimit;
    std::int32_t m_lastId = 0;
    std::map<std::int32_t, Window> m_windows;
};

} // namespace

void RegisterZoomControl(Context& context, Pipelines& pipelines) {
    context.Register<ZoomControl>(context, pipelines);
}

} // namespace sim
