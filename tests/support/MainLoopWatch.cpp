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
struct Signal {
    ESignalType type;
    EProfile profile;
    unsigned short screenId;
    TSSignalData data;
    void* userData;
    MainLoopWatch::Delivery delivery;
};

struct Watch {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<GMainLoop*> loops;
    std::deque<std::shared_ptr<Signal>> signals;
    GMainLoop* running = nullptr;
    std::thread::id thread;
    int begun = 0;
    int ended = 0;
    int underWay = 0;
};

Watch& watch() {
    static Watch* theWatch = new Watch;
    return *theWatch;
}

} // namespace

void MainLoopWatch::clear() {
    const std::lock_guard lock(watch().mutex);
    for (GMainLoop* loop : watch().loops)
        __real_g_main_loop_unref(loop);
    watch().loops.clear();
    watch().running = nullptr;
    watch().begun = 0;
    watch().ended = 0;
}

int MainLoopWatch::runsBegun() {
    const std::lock_guard lock(watch().mutex);
    return watch().begun;
}

int MainLoopWatch::runsEnded() {
    const std::lock_guard lock(watch().mutex);
    return watch().ended;
}

bool MainLoopWatch::waitForRuns(int count) {
    std::unique_lock lock(watch().mutex);
    return watch().changed.wait_for(lock, kLimit, [&] { return watch().begun >= count; });
}

std::thread::id MainLoopWatch::runningThread() {
    const std::lock_guard lock(watch().mutex);
    return watch().thread;
}

GMainLoop* __wrap_g_main_loop_new(GMainContext* context, gboolean isRunning) {
    Timeline::now().call(std::string("g_main_loop_new(") + (context ? "context" : "NULL") + ", " +
                         (isRunning ? "TRUE" : "FALSE") + ")");
    GMainLoop* loop = __real_g_main_loop_new(context, isRunning);
    const std::lock_guard lock(watch().mutex);
    watch().loops.push_back(loop);
    return loop;
}

void __wrap_g_main_loop_run(GMainLoop* loop) {
    {
        const std::lock_guard lock(watch().mutex);
        watch().running = loop;
        watch().thread = std::this_thread::get_id();
        ++watch().begun;
        watch().changed.notify_all();
    }
    __real_g_main_loop_run(loop);
    const std::lock_guard lock(watch().mutex);
    ++watch().ended;
}

void __wrap_g_main_loop_quit(GMainLoop* loop) {
    bool isRunning = false;
    {
        const std::lock_guard lock(watch().mutex);
        isRunning = loop == watch().running;
    }
    Timeline::now().call(isRunning ? "g_main_loop_quit" : "g_main_loop_quit(one that never ran)");
    __real_g_main_loop_quit(loop);
}

void __wrap_g_main_loop_unref(GMainLoop* loop) {
    Timeline::now().call("g_main_loop_unref");
    __real_g_main_loop_unref(loop);
}

void __wrap__ZNSt6thread4joinEv(std::thread* thread) {
    const bool isLoopThread = thread->get_id() == MainLoopWatch::runningThread();
    Timeline::now().call(isLoopThread ? "join" : "join(another thread)");
    __real__ZNSt6thread4joinEv(thread);
}

// Nothing is handed through GLib, whose locks the thread sanitizer does not see: the callback
// fetches its signal from the queue.
static gboolean callBack(gpointer) {
    std::shared_ptr<Signal> signal;
    {
        const std::lock_guard lock(watch().mutex);
        signal = watch().signals.front();
        watch().signals.pop_front();
    }
    const int result = FakeNorvexAPI::current().lastCallback()(
        signal->type, signal->profile, signal->screenId, signal->data, signal->userData);
    const std::lock_guard lock(watch().mutex);
    --watch().underWay;
    signal->delivery = {true, result, std::this_thread::get_id()};
    watch().changed.notify_all();
    return G_SOURCE_REMOVE;
}

static std::shared_ptr<Signal> queue(const Signal& signal) {
    const auto queued = std::make_shared<Signal>(signal);
    {
        const std::lock_guard lock(watch().mutex);
        watch().signals.push_back(queued);
        ++watch().underWay;
    }
    g_idle_add_full(G_PRIORITY_DEFAULT, callBack, nullptr, nullptr);
    return queued;
}

MainLoopWatch::Delivery MainLoopWatch::deliver(ESignalType type, EProfile profile,
                                               unsigned short screenId, TSSignalData data,
                                               void* userData) {
    const auto signal = queue({type, profile, screenId, data, userData, {}});
    std::unique_lock lock(watch().mutex);
    watch().changed.wait_for(lock, kLimit, [&] { return signal->delivery.called; });
    return signal->delivery;
}

void MainLoopWatch::send(ESignalType type, EProfile profile, unsigned short screenId,
                         TSSignalData data) {
    queue({type, profile, screenId, data, nullptr, {}});
}

bool MainLoopWatch::waitUntilDelivered() {
    std::unique_lock lock(watch().mutex);
    return watch().changed.wait_for(lock, kLimit, [] { return watch().underWay == 0; });
}
