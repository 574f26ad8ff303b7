#pragma once

#include <thread>

#include <norvex/client/Signal.h>

// What the test console does with its main loop and its thread. A program that is linked with
// fake_norvex_api has GLib's g_main_loop_new, _run, _quit and _unref and std::thread::join wrapped:
// all but the run are on the time line; the run, which is another thread's, is counted here. Loops
// that are not released are kept here, so that they do not count as leaks of the test.
//
// Handovers only use our own locks, which the thread sanitizer understands.
namespace MainLoopWatch {

// Resets the counts, and releases the remaining loops.
void Clear();

// How many runs were begun and how many came back.
int CountBegunRuns();
int CountEndedRuns();
// Waits until that many runs have begun. False after 10 seconds.
bool WaitForRuns(int count);
// The thread of the run that began last.
std::thread::id GetRunningThread();

struct Signal {
    ESignalType type;
    EProfile profile;
    unsigned short screenId;
    TSSignalData data;
};

// The outcome of a signal.
struct Delivery {
    bool called = false;
    int result = -1;
    std::thread::id thread;
};

// Sends a signal to the registered callback as the middleware does, on the thread that iterates
// GLib's default main context, and waits until it has returned. `called` is false if it was not
// delivered within 10 seconds.
Delivery Deliver(const Signal& signal);
// The same without waiting.
void Send(const Signal& signal);
// Waits until the callback has returned from everything sent. False after 10 seconds.
bool WaitUntilDelivered();

} // namespace MainLoopWatch
