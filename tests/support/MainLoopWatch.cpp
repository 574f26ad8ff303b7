#include "MainLoopWatch.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <glib.h>

#include "FakeNorvexAPI.h"
#include "Timeline.h"

// The names behind --wrap=SYMBOL: __wrap_SYMBOL is called in its place, __real_SYMBOL is the
// wrapped one.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the linker's names.
extern "C" {
GMainLoop* __real_g_main_loop_new(GMainContext* context, gboolean isRunning);
void __real_g_main_loop_run(GMainLoop* loop);
void __real_g_main_loop_quit(GMainLoop* loop);
void __real_g_main_loop_unref(GMainLoop* loop);
void __real__ZNSt6thread4joinEv(std::thread* thread);
GMainLoop* __wrap_g_main_loop_new(GMainContext* context, gboolean isRunning);
void __wrap_g_main_loop_run(GMainLoop* loop);
void __wrap_g_main_loop_quit(GMainLoop* loop);
void __wrap_g_main_loop_unref(GMainLoop* loop);
void __wrap__ZNSt6thread4joinEv(std::thread* thread);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace {

constexpr std::chrono::seconds kLimit{10};

// A signal under way, shared by the two threads.
struct SentSignal {
    MainLoopWatch::Signal signal;
    MainLoopWatch::Delivery delivery;
};

struct Watch {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<GMainLoop*> loops;
    std::deque<std::shared_ptr<SentSignal>> signals;
    GMainLoop* running = nullptr;
    std::thread::id thread;
    int begun = 0;
    int ended = 0;
    int underWay = 0;
};

Watch& GetWatch() {
    static Watch* theWatch = new Watch;
    return *theWatch;
}

} // namespace

void MainLoopWatch::Clear() {
    const std::lock_guard lock(GetWatch().mutex);
    for (GMainLoop* loop : GetWatch().loops)
        __real_g_main_loop_unref(loop);
    GetWatch().loops.clear();
    GetWatch().running = nullptr;
    GetWatch().begun = 0;
    GetWatch().ended = 0;
}

int MainLoopWatch::CountBegunRuns() {
    const std::lock_guard lock(GetWatch().mutex);
    return GetWatch().begun;
}

int MainLoopWatch::CountEndedRuns() {
    const std::lock_guard lock(GetWatch().mutex);
    return GetWatch().ended;
}

bool MainLoopWatch::WaitForRuns(int count) {
    std::unique_lock lock(GetWatch().mutex);
    return GetWatch().changed.wait_for(lock, kLimit, [&] { return GetWatch().begun >= count; });
}

std::thread::id MainLoopWatch::GetRunningThread() {
    const std::lock_guard lock(GetWatch().mutex);
    return GetWatch().thread;
}

GMainLoop* __wrap_g_main_loop_new(GMainContext* context, gboolean isRunning) {
    Timeline::Now().Call(std::string("g_main_loop_new(") + (context ? "context" : "NULL") + ", " +
                         (isRunning ? "TRUE" : "FALSE") + ")");
    GMainLoop* loop = __real_g_main_loop_new(context, isRunning);
    const std::lock_guard lock(GetWatch().mutex);
    GetWatch().loops.push_back(loop);
    return loop;
}

void __wrap_g_main_loop_run(GMainLoop* loop) {
    {
        const std::lock_guard lock(GetWatch().mutex);
        GetWatch().running = loop;
        GetWatch().thread = std::this_thread::get_id();
        ++GetWatch().begun;
        GetWatch().changed.notify_all();
    }
    __real_g_main_loop_run(loop);
    const std::lock_guard lock(GetWatch().mutex);
    ++GetWatch().ended;
}

void __wrap_g_main_loop_quit(GMainLoop* loop) {
    bool isRunning = false;
    {
        const std::lock_guard lock(GetWatch().mutex);
        isRunning = loop == GetWatch().running;
    }
    Timeline::Now().Call(isRunning ? "g_main_loop_quit" : "g_main_loop_quit(one that never ran)");
    __real_g_main_loop_quit(loop);
}

void __wrap_g_main_loop_unref(GMainLoop* loop) {
    Timeline::Now().Call("g_main_loop_unref");
    __real_g_main_loop_unref(loop);
}

void __wrap__ZNSt6thread4joinEv(std::thread* thread) {
    const bool isLoopThread = thread->get_id() == MainLoopWatch::GetRunningThread();
    Timeline::Now().Call(isLoopThread ? "join" : "join(another thread)");
    __real__ZNSt6thread4joinEv(thread);
}

// Nothing is handed through GLib, whose locks the thread sanitizer does not see: the callback
// fetches its signal from the queue.
static gboolean CallBack(gpointer) {
    std::shared_ptr<SentSignal> sent;
    {
        const std::lock_guard lock(GetWatch().mutex);
        sent = GetWatch().signals.front();
        GetWatch().signals.pop_front();
    }
    const auto& [type, profile, screenId, data] = sent->signal;
    const int result = FakeNorvexAPI::Current().GetLastCallback()(type, profile, screenId, data, nullptr);
    const std::lock_guard lock(GetWatch().mutex);
    --GetWatch().underWay;
    sent->delivery = {true, result, std::this_thread::get_id()};
    GetWatch().changed.notify_all();
    return G_SOURCE_REMOVE;
}

static std::shared_ptr<SentSignal> Queue(const MainLoopWatch::Signal& signal) {
    const auto sent = std::make_shared<SentSignal>(SentSignal{signal, {}});
    {
        const std::lock_guard lock(GetWatch().mutex);
        GetWatch().signals.push_back(sent);
        ++GetWatch().underWay;
    }
    g_idle_add_full(G_PRIORITY_DEFAULT, CallBack, nullptr, nullptr);
    return sent;
}

MainLoopWatch::Delivery MainLoopWatch::Deliver(const Signal& signal) {
    const auto sent = Queue(signal);
    std::unique_lock lock(GetWatch().mutex);
    GetWatch().changed.wait_for(lock, kLimit, [&] { return sent->delivery.called; });
    return sent->delivery;
}

void MainLoopWatch::Send(const Signal& signal) {
    Queue(signal);
}

bool MainLoopWatch::WaitUntilDelivered() {
    std::unique_lock lock(GetWatch().mutex);
    return GetWatch().changed.wait_for(lock, kLimit, [] { return GetWatch().underWay == 0; });
}
