#include <algorithm>
#include <array>
#include <list>
#include <memory>

#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"

namespace {

using nlohmann::json;

// Two values, and how often they are described.
class Counted : public sim::Component {
public:
    const char* GetStateName() const override { return "counted"; }
    json DescribeState() const override {
        ++descriptions;
        return {{"one", one}, {"two", json::array({two})}};
    }
    bool Reset() override { return true; }

    int one = 0;
    int two = 0;
    mutable int descriptions = 0;
};

// norvex-simctl, waiting.
class Waiter {
public:
    Waiter(sim::Context& context, const std::vector<std::string>& arguments) {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends.data()), 0);
        m_end = ends[1];
        m_connection = std::make_unique<sim::ControlConnection>(
            ends[0], [](const auto&, auto&) {}, [](auto&) {});
        context.commands.Execute(arguments, *m_connection);
    }
    ~Waiter() { close(m_end); }
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;

    // Whether it has been told that its condition holds.
    bool IsDone() const {
        std::array<char, 1000> answer{};
        const ssize_t size = recv(m_end, answer.data(), answer.size(), MSG_PEEK);
        return size > 0 && std::string(answer.data(), static_cast<std::size_t>(size)).ends_with("{\"status\":0}\n");
    }

private:
    int m_end;
    std::unique_ptr<sim::ControlConnection> m_connection;
};

class WaitsTest : public testing::Test {
protected:
    WaitsTest() {
        EXPECT_TRUE(database.Open({}) && context.numbers.Prepare());
        sim::AddWaitCommand(context);
    }
    void Wait(const std::string& condition) {
        waiters.emplace_back(context, std::vector<std::string>{"wait", condition});
    }
    void Mark(const std::string& path) {
        context.changes.Mark(path);
        while (sim::EventLoop::Get().RunRound(sim::EventLoop::Wait::Never)) {
        }
    }
    std::size_t CountDone() const {
        return static_cast<std::size_t>(
            std::count_if(waiters.begin(), waiters.end(), [](const Waiter& waiter) { return waiter.IsDone(); }));
    }

    sim::Database database;
    sim::Log log;
    sim::Context context{database, log};
    Counted& counted = context.Register<Counted>();
    std::list<Waiter> waiters;
};

TEST_F(WaitsTest, CostNothingUntilAValueOfTheirPathIsMarked) {
    for (int number = 0; number < 100; ++number) {
        Wait("/counted/one == " + std::to_string(1 + number % 2));
        Wait("/counted/two/0 == 1");
    }
    counted.descriptions = 0;
    for (const char* path : {"/daemon/calls", "/counte", "/counted/on", "/counted/one/x/y", "/other"})
        Mark(path);
    // What is below a value is that value's.
    EXPECT_EQ(counted.descriptions, 1);
    EXPECT_EQ(CountDone(), 0u);
}

TEST_F(WaitsTest, AreLookedAtTogetherAndOnlyWhenTheValueIsAnother) {
    for (int number = 0; number < 100; ++number)
        Wait("/counted/one == " + std::to_string(1 + number % 2));
    counted.descriptions = 0;
    counted.one = 2;
    Mark("/counted/one");
    EXPECT_EQ(counted.descriptions, 1);
    EXPECT_EQ(CountDone(), 50u);
    Mark("/counted");
    Mark("");
    EXPECT_EQ(counted.descriptions, 3);
    counted.one = 1;
    Mark("/counted/one");
    EXPECT_EQ(CountDone(), 100u);
    // Nobody waits any more.
    Mark("/counted/one");
    EXPECT_EQ(counted.descriptions, 4);
}

TEST_F(WaitsTest, OneThatComesLaterLeavesNoneOfTheOthersBehind) {
    Wait("/counted/one == 1");
    counted.one = 1;
    context.changes.Mark("/counted/one");
    Wait("/counted/one == 0");
    counted.one = 0;
    Mark("/counted/one");
    EXPECT_EQ(CountDone(), 2u);
}

TEST_F(WaitsTest, AreToldOfAPartAsAWhole) {
    Wait("/counted == {\"one\":1,\"two\":[0]}");
    Wait("/counted/three == null");
    EXPECT_EQ(CountDone(), 1u);
    counted.one = 1;
    Mark("/counted/one");
    EXPECT_EQ(CountDone(), 2u);
}

} // namespace
