#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <norvex/client/NorvexSession.h>
#include <norvex/client/Signal.h>
#include <norvex/client/SignalSubscriber.h>

// A service record as the faked middleware shall hand it out.
struct FakeRecord {
    // Fields by tag; a field without a value is there and gives no data.
    std::map<int, std::optional<std::int64_t>> fields;
    // False: the record comes without a table of fields.
    bool hasTable = true;
};

// The middleware's client library for tests: defines the factories of NorvexAPI and everything
// behind them. It records each call, with the arguments as they came in, on the time line
// (Timeline.h) and answers from a script; what the script does not tell is answered by 0
// (factories), 1 (operations) and out arguments left as they were.
//
// Objects are called by their kind ("AVControl"), from the second of a kind on with a number
// ("AVControl#2"). Operations are scripted by kind and name ("AVControl.MuteVideo"), factories by
// name ("CreateAVControl").
//
// One exists at a time, while a test runs. Objects that were never destroyed go with it. The script
// is written before the console runs, or on its thread. Everything else: any thread.
class FakeNorvexAPI {
public:
    FakeNorvexAPI();
    ~FakeNorvexAPI();
    FakeNorvexAPI(const FakeNorvexAPI&) = delete;
    FakeNorvexAPI& operator=(const FakeNorvexAPI&) = delete;

    // The one that exists.
    static FakeNorvexAPI& current();

    // Results of the next calls of an operation.
    void answer(const std::string& operation, std::vector<int> results);
    // What the next calls of an operation store in their out argument.
    void give(const std::string& operation, std::vector<std::int64_t> values);
    // The next creation answers `result`, with an object all the same or with null.
    void answerCreation(const std::string& factory, int result, bool withObject);
    // What a successful ServiceNavigation.GetTvMode stores, from now on; {0, 0} without it.
    void giveTvMode(int antennaMode, int serviceMode);
    // The next FindService finds this record; without one it finds none and answers 0.
    void giveFound(FakeRecord record);
    // What ServiceNavigation.GetServiceList appends, each time.
    void giveServiceList(std::vector<FakeRecord> records);
    // The next ServiceGuide.GetCurrentProgram stores a programme with a title of so many units, or
    // without one; with none given there is no programme and the answer is 0.
    void giveProgram(std::optional<unsigned int> titleLength);
    // What ZoomControl.GetConnectedZoomWindows appends.
    void giveZoomWindows(std::vector<int> windowIds);
    // Done within the next call of an operation or factory, on its thread, after it was recorded.
    void runWithin(const std::string& operation, std::function<void()> action);

    // Names of the sessions that were not destroyed, in the order of their creation.
    std::vector<std::string> kept() const;
    // Records, queries, programmes and snapshots that are alive.
    int liveValues() const;
    // The callback registered last, also after it was unregistered.
    NorvexSignalCallbackFunction lastCallback() const;

    // The rest is for the pieces of the fake.

    struct Creation {
        int result = 0;
        bool withObject = true;
    };
    struct Program {
        bool hasTitle = false;
        unsigned int titleLength = 0;
    };

    // Records a call of an operation and does what the script wants done within it.
    void called(const std::string& operation, const std::string& call);
    int result(const std::string& operation, int otherwise = 1);
    std::optional<std::int64_t> value(const std::string& operation);
    std::pair<int, int> tvMode() const;
    std::optional<FakeRecord> found();
    std::vector<FakeRecord> serviceList() const;
    std::optional<Program> nextProgram();
    std::vector<int> zoomWindows() const;
    void countValue(int change);

    Creation nextCreation(const std::string& factory);
    std::string nameFor(const std::string& kind);
    void own(std::string name, std::unique_ptr<INorvexSession> session);
    int destroy(INorvexSession* session);
    int createSubscriber(NorvexSignalCallbackFunction callback, ISignalSubscriber** subscriber);
    int destroySubscriber(NorvexSignalCallbackFunction callback);

private:
    struct Owned {
        std::string name;
        std::unique_ptr<INorvexSession> session;
    };

    mutable std::mutex m_mutex;
    std::map<std::string, std::deque<int>> m_results;
    std::map<std::string, std::deque<std::int64_t>> m_values;
    std::map<std::string, std::deque<Creation>> m_creations;
    std::map<std::string, std::deque<std::function<void()>>> m_actions;
    std::pair<int, int> m_tvMode{0, 0};
    std::deque<FakeRecord> m_found;
    std::vector<FakeRecord> m_serviceList;
    std::deque<Program> m_programs;
    std::vector<int> m_zoomWindows;
    std::map<std::string, int> m_named;
    std::vector<Owned> m_sessions;
    std::unique_ptr<ISignalSubscriber> m_pSubscriber;
    NorvexSignalCallbackFunction m_registered = nullptr;
    NorvexSignalCallbackFunction m_callback = nullptr;
    int m_liveValues = 0;
};
