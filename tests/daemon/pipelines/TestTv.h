#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <interfaces/Interfaces.h>
#include <nlohmann/json.hpp>

#include "CallTree.h"
#include "Connection.h"
#include "Context.h"
#include "Handle.h"
#include "LineUp.h"
#include "PipelineComponents.h"

constexpr std::int32_t kDone = 1;
// The status of a reply to a malformed call.
constexpr std::int32_t kNoStatus = -1000;
constexpr std::uint64_t kInvalidService = ~std::uint64_t{0};

using Signals = std::vector<std::string>;

// A line-up defined by the test.
class TestLineUp : public sim::LineUp {
public:
    std::optional<sim::ServiceFacts> FindFacts(std::uint64_t service) override {
        const auto found = services.find(service);
        return found == services.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::uint64_t, sim::ServiceFacts> services;
};

// The reply to a call; values by place.
class Reply {
public:
    explicit Reply(std::string message) : m_message(std::move(message)) {}

    // False: there was none.
    bool HasCome() const { return !m_message.empty(); }
    std::int32_t Status() const { return Get<std::int32_t>(0).value_or(kNoStatus); }
    template <class T> std::optional<T> Get(std::int16_t place) const {
        T value{};
        const auto node = Find(place);
        return node && node->Get(value) ? std::optional(value) : std::nullopt;
    }
    std::optional<wire::Node> Find(std::int16_t place) const;
    // The numbers of a list.
    Ids GetIds(std::int16_t place) const;

private:
    std::string m_message;
};

class TestTv;

// A client process, with one connection for calls. Its calls go to sessions with one pipeline, one
// for each interface, which are opened when they are needed.
class TestClient {
public:
    explicit TestClient(TestTv& tv, const sim::Handle& pipeline = sim::kMainPipeline);
    ~TestClient();

    template <class Method, class... Arguments> Reply Call(Method method, const Arguments&... arguments) {
        std::uint32_t& session = m_sessions[GetName<Method>()];
        if (session == 0)
            session = OpenAt(GetName<Method>(), m_pipeline);
        return Exchange(GetName<Method>(), session, interfaces::GetMethodName(method),
                        static_cast<std::int16_t>(method), CallTree(arguments...));
    }
    template <class Method, class... Arguments> std::int32_t Do(Method method, const Arguments&... arguments) {
        return Call(method, arguments...).Status();
    }

    // A call as it is sent.
    Reply Exchange(std::string_view interface, std::uint32_t session, std::string_view method, std::int16_t id,
                   const CallTree& arguments);
    // A reply that comes later.
    Reply TakeReply();
    // Why the daemon has closed the connection; empty if it has not.
    std::string GetEndReason() const;

    // Another session of the interface, which is not used for calls; 0 if refused.
    template <class Method> std::uint32_t Open() { return OpenAt(GetName<Method>(), m_pipeline); }
    template <class Method> std::uint32_t Open(const sim::Handle& pipeline) {
        return OpenAt(GetName<Method>(), pipeline);
    }
    std::int32_t Close(std::uint32_t session);
    // The session used for calls.
    template <class Method> void Close() { Close(std::exchange(m_sessions[GetName<Method>()], 0u)); }

    std::int32_t SetSource(std::int32_t source);
    std::int32_t SetSource(std::int32_t source, std::uint64_t service);
    std::int32_t SetService(std::uint64_t service);
    std::int32_t SetTvMode(const sim::TvMode& mode);
    std::int32_t SetTvMode(const sim::TvMode& mode, std::uint64_t service);

    // Connects the subscriber's signals; TakeSignals returns them.
    void ListenToSignals();
    std::int32_t Subscribe(std::int32_t type);
    std::int32_t Unsubscribe(std::int32_t type);
    // "81 1:0 0x7" for each received signal.
    Signals TakeSignals();
    // One of its connections ends; with the last one its grace period begins.
    void Disconnect();
    // The same process connects, again or once more.
    void Reconnect();
    // The process is released.
    void Die();

private:
    struct Link;

    template <class Method> static std::string GetName() { return std::string(interfaces::kTable<Method>.name); }
    std::uint32_t OpenAt(const std::string& interface, const sim::Handle& pipeline);

    TestTv& m_tv;
    sim::Handle m_pipeline;
    sim::Token m_token;
    sim::Client* m_client;
    std::unique_ptr<Link> m_calls;
    std::unique_ptr<Link> m_signals;
    std::map<std::string, std::uint32_t> m_sessions; // by interface
};

// The pipelines of a TV, with the test's line-up, called as a client calls them. The grace period
// of clients is short.
class TestTv {
public:
    using RegisterComponents = std::function<sim::PipelineComponents(sim::Context&)>;

    TestTv();
    // With other components; in memory without a path.
    explicit TestTv(const RegisterComponents& registerComponents, const std::string& databasePath = {});

    nlohmann::json State(const std::string& path) const {
        return context.DescribeState().at(nlohmann::json::json_pointer(path));
    }
    // Of the main pipeline.
    nlohmann::json MainState(const std::string& name) const { return State("/pipelines/1:0/" + name); }
    // The text of the refusal; empty on success.
    std::string Set(const std::string& name, const std::vector<std::string>& arguments);
    // Whether a line of that tag since the last check contains the text.
    bool Logged(const std::string& tag, const std::string& text);
    // Iterates the event loop until the condition is true; fails the test on timeout.
    void WaitUntil(const std::function<bool()>& condition);
    // Fails the test if a value of the state has changed without having been marked as changed.
    // Done after each of the first calls.
    void CheckMarks();

    sim::Database database;
    sim::Log log;

private:
    sim::Context& Prepare(const std::string& databasePath);

    std::vector<std::pair<std::string, std::string>> m_lines;
    nlohmann::json m_known;
    std::set<std::string> m_marked;
    int m_checks = 0;

public:
    TestLineUp lineUp;
    sim::Context context;
    sim::PipelineComponents components;
};

// Services of the test line-up.
constexpr std::uint64_t kAirService = 0xfa0000000002002dULL;
constexpr std::uint64_t kOtherAirService = 0x8000000000000007ULL;
constexpr std::uint64_t kCableService = 0x11;
constexpr std::uint64_t kStreamedService = 0x22;
