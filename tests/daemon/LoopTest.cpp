#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "EventSources.h"

namespace {

using Clock = std::chrono::steady_clock;
using sim::EventLoop;
using sim::FdWatch;
using sim::Timer;

EventLoop& Loop() {
    return EventLoop::Get();
}

bool RunRound() {
    return Loop().RunRound(EventLoop::Wait::UntilReady);
}

// A socket with something to read, and a watch on it that counts its handler's calls.
class ReadySocket {
public:
    explicit ReadySocket(std::function<void()> handler = [] {}) {
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends), 0);
        Send();
        watch.emplace();
        watch->Start(m_ends[0], EPOLLIN, [this, handler = std::move(handler)](std::uint32_t seen) {
            ++calls;
            events = seen;
            handler();
        });
    }
    ~ReadySocket() {
        watch.reset();
        close(m_ends[0]);
        close(m_ends[1]);
    }
    ReadySocket(const ReadySocket&) = delete;
    ReadySocket& operator=(const ReadySocket&) = delete;

    int GetFd() const { return m_ends[0]; }
    void Send() const { EXPECT_EQ(write(m_ends[1], "x", 1), 1); }
    void Receive() const {
        char byte = 0;
        EXPECT_EQ(read(m_ends[0], &byte, 1), 1);
    }
    void HangUp() const { EXPECT_EQ(shutdown(m_ends[1], SHUT_RDWR), 0); }

    int calls = 0;
    std::uint32_t events = 0;
    std::optional<FdWatch> watch;

private:
    int m_ends[2]{};
};

TEST(LoopTest, ADescriptorIsReportedOnceARoundAsLongAsItIsReady) {
    ReadySocket socket;
    EXPECT_TRUE(RunRound());
    EXPECT_EQ(socket.calls, 1);
    EXPECT_EQ(socket.events, std::uint32_t{EPOLLIN});
    EXPECT_TRUE(RunRound());
    EXPECT_EQ(socket.calls, 2);
    socket.Receive();
    EXPECT_FALSE(Loop().RunRound(EventLoop::Wait::Never));
    EXPECT_EQ(socket.calls, 2);
    socket.Send();
    EXPECT_TRUE(RunRound());
    EXPECT_EQ(socket.calls, 3);
}

TEST(LoopTest, EveryReadyDescriptorHasItsTurnInARound) {
    std::vector<std::unique_ptr<ReadySocket>> sockets;
    for (int i = 0; i < 200; ++i)
        sockets.push_back(std::make_unique<ReadySocket>());
    for (int round = 1; round <= 3; ++round) {
        RunRound();
        for (const auto& socket : sockets)
            EXPECT_EQ(socket->calls, round);
    }
}

TEST(LoopTest, ADescriptorIsWatchedForWhatWasAskedLast) {
    ReadySocket socket;
    socket.watch->SetEvents(EPOLLOUT);
    RunRound();
    EXPECT_EQ(socket.events, std::uint32_t{EPOLLOUT});
    socket.watch->SetEvents(EPOLLIN | EPOLLOUT);
    RunRound();
    EXPECT_EQ(socket.events, std::uint32_t{EPOLLIN | EPOLLOUT});
    socket.watch->SetEvents(0);
    EXPECT_FALSE(Loop().RunRound(EventLoop::Wait::Never));
    EXPECT_EQ(socket.calls, 2);
}

TEST(LoopTest, AWatchMayBeStoppedAndStartedAgain) {
    ReadySocket socket;
    socket.watch->Stop();
    EXPECT_FALSE(Loop().RunRound(EventLoop::Wait::Never));
    EXPECT_EQ(socket.calls, 0);
    bool isCalled = false;
    socket.watch->Start(socket.GetFd(), EPOLLIN, [&](std::uint32_t) { isCalled = true; });
    RunRound();
    EXPECT_TRUE(isCalled);
}

TEST(LoopTest, AHangUpIsReportedWithoutBeingAskedFor) {
    ReadySocket socket;
    socket.watch->SetEvents(0);
    socket.HangUp();
    RunRound();
    EXPECT_EQ(socket.events, std::uint32_t{EPOLLHUP});
}

TEST(LoopTest, AHandlerMayDestroyItsOwnWatch) {
    const auto kept = std::make_shared<std::string>("kept");
    std::optional<ReadySocket> socket;
    std::string seen;
    socket.emplace([&socket, &seen, copy = kept] {
        socket->watch.reset();
        seen = *copy; // what the handler holds lasts until it returns
    });
    RunRound();
    EXPECT_EQ(seen, "kept");
    EXPECT_EQ(kept.use_count(), 1); // it has been destroyed since
    EXPECT_FALSE(Loop().RunRound(EventLoop::Wait::Never));
    EXPECT_EQ(socket->calls, 1);
}

TEST(LoopTest, AHandlerMayDestroyOthersThatAreReadyInTheSameRound) {
    std::vector<std::unique_ptr<ReadySocket>> sockets;
    int calls = 0;
    for (int i = 0; i < 3; ++i) {
        sockets.push_back(std::make_unique<ReadySocket>([&sockets, &calls, i] {
            ++calls;
            for (int other = 0; other < 3; ++other) {
                if (other != i)
                    sockets[static_cast<std::size_t>(other)].reset();
            }
        }));
    }
    RunRound();
    EXPECT_EQ(calls, 1);
    RunRound();
    EXPECT_EQ(calls, 2);
}

// A ready descriptor is closed, and its number is reused for one that is not ready.
TEST(LoopTest, ANewWatchIsNotCalledForAnOldOneWithTheSameNumber) {
    int ends[2]{};
    FdWatch later;
    bool isLaterCalled = false;
    std::optional<ReadySocket> second;
    std::optional<ReadySocket> first;
    const auto exchange = [&](std::optional<ReadySocket>& other) {
        if (!other)
            return;
        const int number = other->GetFd();
        other.reset();
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        ASSERT_EQ(ends[0], number);
        later.Start(number, EPOLLIN, [&](std::uint32_t) { isLaterCalled = true; });
    };
    first.emplace([&] { exchange(second); });
    second.emplace([&] { exchange(first); });
    RunRound();
    EXPECT_NE(first.has_value(), second.has_value());
    EXPECT_FALSE(isLaterCalled);
    later.Stop();
    close(ends[0]);
    close(ends[1]);
}

TEST(LoopTest, ATimerFiresOnceAndNeverEarly) {
    Timer timer;
    int fired = 0;
    const auto begin = Clock::now();
    timer.Start(3, [&] { ++fired; });
    EXPECT_TRUE(timer.IsRunning());
    while (fired == 0)
        RunRound();
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(3));
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_FALSE(Loop().RunRound(EventLoop::Wait::Never));
    EXPECT_EQ(fired, 1);
}

TEST(LoopTest, TimersFireInTheOrderOfTheirTimes) {
    std::string order;
    Timer timers[4];
    timers[0].Start(3, [&] { order += 'd'; });
    timers[1].Start(2, [&] { order += 'c'; });
    timers[2].StartSoon([&] { order += 'a'; });
    timers[3].StartSoon([&] { order += 'b'; });
    while (order.size() < 4)
        RunRound();
    EXPECT_EQ(order, "abcd");
}

TEST(LoopTest, ATimerThatIsStartedAgainForgetsWhatItWasStartedFor) {
    std::string order;
    Timer timer;
    timer.StartSoon([&] { order += 'a'; });
    timer.Start(1, [&] { order += 'b'; });
    EXPECT_FALSE(Loop().RunRound(EventLoop::Wait::Never));
    while (order.empty())
        RunRound();
    EXPECT_EQ(order, "b");
}

TEST(LoopTest, AHandlerMayStartItsTimerAgainForTheNextRound) {
    int fired = 0;
    Timer timer;
    std::function<void()> again = [&] {
        ++fired;
        EXPECT_FALSE(timer.IsRunning());
        timer.StartSoon(again);
    };
    timer.StartSoon(again);
    for (int round = 1; round <= 3; ++round) {
        EXPECT_TRUE(RunRound());
        EXPECT_EQ(fired, round);
    }
}

TEST(LoopTest, AHandlerMayDestroyItsOwnTimerAndOthersThatAreDue) {
    const auto kept = std::make_shared<std::string>("kept");
    std::string seen;
    std::optional<Timer> first;
    std::optional<Timer> second;
    first.emplace();
    second.emplace();
    first->StartSoon([&first, &second, &seen, copy = kept] {
        second.reset();
        first.reset();
        seen += *copy;
    });
    second->StartSoon([&seen] { seen += "stopped"; });
    RunRound();
    EXPECT_FALSE(Loop().RunRound(EventLoop::Wait::Never));
    EXPECT_EQ(seen, "kept");
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(LoopTest, WhatIsStartedSoonRunsInTheNextRoundHoweverMuchIsReady) {
    std::vector<std::unique_ptr<ReadySocket>> busy;
    for (int i = 0; i < 100; ++i)
        busy.push_back(std::make_unique<ReadySocket>());
    Timer timer;
    bool fired = false;
    ReadySocket starter([&] {
        if (!timer.IsRunning() && !fired)
            timer.StartSoon([&] { fired = true; });
    });
    RunRound();
    EXPECT_FALSE(fired);
    RunRound();
    EXPECT_TRUE(fired);
}

// A TV that was stopped for a while finds messages and expired deadlines at the same time.
TEST(LoopTest, ADescriptorComesBeforeATimerThatIsDueInTheSameRound) {
    Timer deadline;
    bool isMissed = false;
    ReadySocket socket([&] { deadline.Stop(); });
    deadline.Start(0, [&] { isMissed = true; });
    RunRound();
    EXPECT_FALSE(isMissed);
}

TEST(LoopTest, RunEndsAfterTheRoundThatQuits) {
    std::string order;
    ReadySocket socket([&] {
        order += 'a';
        Loop().Quit();
    });
    Timer timer;
    timer.StartSoon([&] { order += 'b'; });
    Loop().Run();
    EXPECT_EQ(order, "ab");
    Loop().Run(); // runs again until the next Quit
    EXPECT_EQ(order, "aba");
}

TEST(LoopTest, AQuitBeforeRunIsKept) {
    Loop().Quit();
    Loop().Run();
}

int interruptions = 0;

TEST(LoopTest, AnInterruptedWaitGoesOn) {
    struct sigaction interrupt {};
    struct sigaction before {};
    interrupt.sa_handler = [](int) { ++interruptions; };
    ASSERT_EQ(sigaction(SIGALRM, &interrupt, &before), 0);
    const itimerval oftenEnough{{0, 1000}, {0, 1000}};
    ASSERT_EQ(setitimer(ITIMER_REAL, &oftenEnough, nullptr), 0);
    Timer timer;
    bool fired = false;
    const auto begin = Clock::now();
    timer.Start(20, [&] {
        fired = true;
        Loop().Quit();
    });
    Loop().Run();
    const itimerval off{};
    setitimer(ITIMER_REAL, &off, nullptr);
    sigaction(SIGALRM, &before, nullptr);
    EXPECT_TRUE(fired);
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(20));
    EXPECT_GT(interruptions, 0);
}

} // namespace
