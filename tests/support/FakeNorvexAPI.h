#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <norvex/client/NorvexSession.h>
#include <norvex/client/Signal.h>
#include <norvex/client/SignalSubscriber.h>

class TCProgramData;
class TCServiceData;

// A service record as the faked middleware shall hand it out.
struct FakeRecord {
    // Fields by tag; a field without a value is there and gives no data.
    std::map<int, std::optional<std::int64_t>> fields;
    // False: the record comes without a table of fields.
    bool hasTable = true;
};

// A programme with a title of so many units, or without one.
struct FakeProgram {
    std::optional<unsigned int> titleLength;
};

// The middleware's client library for tests: defines the factories of NorvexAPI and everything
// behind them. It records each call, with the arguments as they came in, on the time line
// (Timeline.h) and answers from a script; what the script leaves open is answered by 0 (factories),
// 1 (operations) and out arguments left as they were.
//
// Objects are called by their kind ("AVControl"), with a number ("AVControl#2") while others of
// their kind are alive. Operations are scripted by kind and name ("AVControl.MuteVideo"), factories
// by name ("CreateAVControl").
//
// One exists at a time, while a test runs. Objects that were never destroyed go with it. It is used
// on the console's thread; only GetLastCallback may be called from any.
class FakeNorvexAPI {
public:
    FakeNorvexAPI();
    ~FakeNorvexAPI();
    FakeNorvexAPI(const FakeNorvexAPI&) = delete;
    FakeNorvexAPI& operator=(const FakeNorvexAPI&) = delete;

    // The one that exists.
    static FakeNorvexAPI& Current();

    // Results of the next calls of an operation.
    void Answer(const std::string& operation, const std::vector<int>& results);
    // What the next calls of an operation store in their out argument.
    void Give(const std::string& operation, const std::vector<std::int64_t>& values);
    // The next creation answers `result`, with an object all the same or with null.
    void AnswerCreation(const std::string& factory, int result, bool withObject) {
        m_creations[factory].push_back({result, withObject});
    }
    // What a successful ServiceNavigation.GetTvMode stores, from now on; {0, 0} without it.
    void GiveTvMode(int antennaMode, int serviceMode) { m_tvMode = {antennaMode, serviceMode}; }
    // The next FindService finds this record; without one it finds none and answers 0.
    void GiveFound(FakeRecord record) { m_found.push_back(std::move(record)); }
    // What ServiceNavigation.GetServiceList appends, each time.
    void GiveServiceList(std::vector<FakeRecord> records) { m_serviceList = std::move(records); }
    // The next ServiceGuide.GetCurrentProgram stores this programme; without one there is none and
    // the answer is 0.
    void GiveProgram(std::optional<unsigned int> titleLength) { m_programs.push_back({titleLength}); }
    // What ZoomControl.GetConnectedZoomWindows appends.
    void GiveZoomWindows(std::vector<int> windowIds) { m_zoomWindows = std::move(windowIds); }
    // Done within the next call of an operation or factory, after it was recorded.
    void RunWithin(const std::string& operation, std::function<void()> action) {
        m_actions[operation].push_back(std::move(action));
    }

    // Names of the sessions that were not destroyed, in the order of their creation.
    std::vector<std::string> GetKept() const;
    // Records, queries, programmes and snapshots that are alive.
    int CountLiveValues() const { return m_liveValues; }
    // The callback registered last, also after it was unregistered.
    NorvexSignalCallbackFunction GetLastCallback() const { return m_callback; }

    // The rest is for the pieces of the fake.

    // Records a call of an operation and does what the script wants done within it.
    void NoteCall(const std::string& operation, const std::string& call);
    int TakeResult(const std::string& operation, int otherwise = 1);
    std::optional<std::int64_t> TakeValue(const std::string& operation);
    std::optional<FakeRecord> TakeFound();
    std::optional<FakeProgram> TakeProgram();
    std::pair<int, int> GetTvMode() const { return m_tvMode; }
    const std::vector<FakeRecord>& GetServiceList() const { return m_serviceList; }
    const std::vector<int>& GetZoomWindows() const { return m_zoomWindows; }
    void CountValue(int change) { m_liveValues += change; }

    struct Owned {
        std::string name;
        std::unique_ptr<INorvexSession> session;
    };
    // A factory's call: `make` puts the session in place under the name that it gets. `wasNull`
    // tells what the caller's pointer was.
    int Create(const std::string& kind, const std::string& arguments, bool wasNull,
               const std::function<void(const std::string& name, Owned& place)>& make);
    int Destroy(INorvexSession* session);
    int CreateSubscriber(NorvexSignalCallbackFunction callback, ISignalSubscriber** subscriber);
    int DestroySubscriber(NorvexSignalCallbackFunction callback);

private:
    struct Creation {
        int result = 0;
        bool withObject = true;
    };

    std::map<std::string, std::deque<int>> m_results;
    std::map<std::string, std::deque<std::int64_t>> m_values;
    std::map<std::string, std::deque<Creation>> m_creations;
    std::map<std::string, std::deque<std::function<void()>>> m_actions;
    std::pair<int, int> m_tvMode{0, 0};
    std::deque<FakeRecord> m_found;
    std::vector<FakeRecord> m_serviceList;
    std::deque<FakeProgram> m_programs;
    std::vector<int> m_zoomWindows;
    std::vector<Owned> m_sessions;
    std::unique_ptr<ISignalSubscriber> m_subscriber;
    NorvexSignalCallbackFunction m_registered = nullptr;
    std::atomic<NorvexSignalCallbackFunction> m_callback = nullptr;
    int m_liveValues = 0;
};

// How the faked sessions fill the records that the console hands them.
namespace FakeRecords {

// `data` reads as `record` from now on.
void Fill(TCServiceData& data, const FakeRecord& record);
void Fill(TCProgramData& data, const FakeProgram& program);
// Whether nothing has been read into it yet.
bool IsFresh(const TCServiceData& data);
bool IsFresh(const TCProgramData& data);

} // namespace FakeRecords
