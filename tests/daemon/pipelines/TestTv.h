#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "CallTree.h"
#include "Context.h"
#include "Connection.h"
#include "LineUp.h"
#include "PipelineComponents.h"

constexpr std::int32_t kDone = 1;

// A line-up that a test writes.
class TestLineUp : public sim::LineUp {
public:
    std::optional<sim::ServiceFacts> FindFacts(std::uint64_t service) override {
        const auto found = services.find(service);
        return found == services.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::uint64_t, sim::ServiceFacts> services;
};

// What came back of a call; values by place.
class Reply {
public:
    explicit Reply(std::string message) : m_message(std::move(message)) {}

    std::int32_t Status() const { return Get<std::int32_t>(0).value_or(-1000); }
    template <class T> std::optional<T> Get(std::int16_t place) const {
        T value{};
        const auto node = Find(place);
        return node && node->Get(value) ? std::optional(value) : std::nullopt;
    }
    std::optional<wire::Node> Find(std::int16_t place) const;
    // The numbers of a list.
    std::vector<std::int32_t> Ids(std::int16_t place) const;

private:
    std::string m_message;
};

class TestTv;

// A client process, with one connection for calls.
class TestClient {
public:
    explicit TestClient(TestTv& tv);
    ~TestClient();

    // 0 when refused.
    std::uint32_t Open(const std::string& interface, std::int32_t profile = 1,
                       std::uint16_t screen = 0);
    void Close(std::uint32_t session);
    // The operation with that number in the session's interface.
    Reply Call(std::uint32_t session, const std::string& method, std::int16_t id,
               const CallTree& arguments = {});
    // From now on signals for the session come, to be taken by TakeSignals.
    void ListenTo(std::uint32_t session);
    // "81 1:0 0x7" for each signal that has come.
    std::vector<std::string> TakeSignals();
    // The process is gone for good.
    void Die();

    sim::Client& GetClient() { return *m_client; }

private:
    struct Line;

    Reply Exchange(const std::string& interface, std::uint32_t session, const std::string& method,
                   std::int16_t id, const CallTree& arguments);

    TestTv& m_tv;
    sim::Client* m_client;
    std::unique_ptr<Line> m_calls;
    std::unique_ptr<Line> m_signals;
};

// The pipelines of a TV, with a line-up of the test's own, called as a client calls them.
class TestTv {
public:
    using Mount = std::function<sim::PipelineComponents(sim::Context&)>;

    TestTv();
    // With what `mount` mounts in place of the pipelines alone; in memory without a path.
    explicit TestTv(const Mount& mount, const std::string& databasePath = {});

    nlohmann::json State(const std::string& path) const {
        return context.DescribeState().at(nlohmann::json::json_pointer(path));
    }
    // The refusal's text; empty when it was done.
    std::string Set(const std::string& name, const std::vector<std::string>& words);
    // Whether a line of that tag holds the text, of those since the last question.
    bool Logged(const std::string& tag, const std::string& text);
    // Iterates the main context until it holds; fails the test when it does not come to that.
    void WaitUntil(const std::function<bool()>& condition);

    sim::Database database;
    sim::Log log;

private:
    sim::Context& Prepare(const std::string& databasePath);

    std::vector<std::pair<std::string, std::string>> m_lines;

public:
    TestLineUp lineUp;
    sim::Context context;
    sim::PipelineComponents parts;
};

// Services of the test line-up.
constexpr std::uint64_t kAirService = 0xfa0000000002002dULL;
constexpr std::uint64_t kOtherAirService = 0x8000000000000007ULL;
constexpr std::uint64_t kCableService = 0x11;
constexpr std::uint64_t kStreamedService = 0x22;
