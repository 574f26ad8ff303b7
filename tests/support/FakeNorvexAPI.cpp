#include "FakeNorvexAPI.h"

#include <cstdlib>

#include "CallText.h"
#include "Timeline.h"

using CallText::call;

namespace {

FakeNorvexAPI* theFake = nullptr;

template <typename Value>
std::optional<Value> Next(std::map<std::string, std::deque<Value>>& script,
                          const std::string& operation) {
    const auto queue = script.find(operation);
    if (queue == script.end() || queue->second.empty())
        return std::nullopt;
    Value value = std::move(queue->second.front());
    queue->second.pop_front();
    return value;
}

template <typename Value> std::optional<Value> Next(std::deque<Value>& script) {
    if (script.empty())
        return std::nullopt;
    Value value = std::move(script.front());
    script.pop_front();
    return value;
}

class FakeSignalSubscriber : public ISignalSubscriber {
public:
    int Subscribe(ESignalType type, int mode, int filter, int profile, int screen) override {
        return Answered("SignalSubscriber.Subscribe",
                        call("SignalSubscriber.Subscribe", type, mode, filter, profile, screen));
    }
    int Unsubscribe(ESignalType type, int filter, int profile, int screen) override {
        return Answered("SignalSubscriber.Unsubscribe",
                        call("SignalSubscriber.Unsubscribe", type, filter, profile, screen));
    }

private:
    static int Answered(const std::string& operation, std::string call) {
        FakeNorvexAPI::current().called(operation, std::move(call));
        return FakeNorvexAPI::current().result(operation);
    }
};

} // namespace

FakeNorvexAPI::FakeNorvexAPI() {
    if (theFake)
        std::abort();
    theFake = this;
}

FakeNorvexAPI::~FakeNorvexAPI() {
    m_sessions.clear();
    theFake = nullptr;
}

FakeNorvexAPI& FakeNorvexAPI::current() {
    if (!theFake)
        std::abort();
    return *theFake;
}

void FakeNorvexAPI::answer(const std::string& operation, std::vector<int> results) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_results[operation].insert(m_results[operation].end(), results.begin(), results.end());
}

void FakeNorvexAPI::give(const std::string& operation, std::vector<std::int64_t> values) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_values[operation].insert(m_values[operation].end(), values.begin(), values.end());
}

void FakeNorvexAPI::answerCreation(const std::string& factory, int result, bool withObject) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_creations[factory].push_back({result, withObject});
}

void FakeNorvexAPI::giveTvMode(int antennaMode, int serviceMode) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_tvMode = {antennaMode, serviceMode};
}

void FakeNorvexAPI::giveFound(FakeRecord record) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_found.push_back(std::move(record));
}

void FakeNorvexAPI::giveServiceList(std::vector<FakeRecord> records) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_serviceList = std::move(records);
}

void FakeNorvexAPI::giveProgram(std::optional<unsigned int> titleLength) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_programs.push_back({titleLength.has_value(), titleLength.value_or(0)});
}

void FakeNorvexAPI::giveZoomWindows(std::vector<int> windowIds) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_zoomWindows = std::move(windowIds);
}

void FakeNorvexAPI::runWithin(const std::string& operation, std::function<void()> action) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_actions[operation].push_back(std::move(action));
}

std::vector<std::string> FakeNorvexAPI::kept() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<std::string> names;
    for (const Owned& owned : m_sessions)
        names.push_back(owned.name);
    return names;
}

int FakeNorvexAPI::liveValues() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_liveValues;
}

NorvexSignalCallbackFunction FakeNorvexAPI::lastCallback() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_callback;
}

void FakeNorvexAPI::called(const std::string& operation, const std::string& call) {
    Timeline::now().call(call);
    std::optional<std::function<void()>> action;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        action = Next(m_actions, operation);
    }
    if (action)
        (*action)();
}

int FakeNorvexAPI::result(const std::string& operation, int otherwise) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return Next(m_results, operation).value_or(otherwise);
}

std::optional<std::int64_t> FakeNorvexAPI::value(const std::string& operation) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return Next(m_values, operation);
}

std::pair<int, int> FakeNorvexAPI::tvMode() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_tvMode;
}

std::optional<FakeRecord> FakeNorvexAPI::found() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return Next(m_found);
}

std::vector<FakeRecord> FakeNorvexAPI::serviceList() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_serviceList;
}

std::optional<FakeNorvexAPI::Program> FakeNorvexAPI::nextProgram() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return Next(m_programs);
}

std::vector<int> FakeNorvexAPI::zoomWindows() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_zoomWindows;
}

void FakeNorvexAPI::countValue(int change) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_liveValues += change;
}

FakeNorvexAPI::Creation FakeNorvexAPI::nextCreation(const std::string& factory) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return Next(m_creations, factory).value_or(Creation{});
}

std::string FakeNorvexAPI::nameFor(const std::string& kind) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const int number = ++m_named[kind];
    return number == 1 ? kind : kind + "#" + std::to_string(number);
}

void FakeNorvexAPI::own(std::string name, std::unique_ptr<INorvexSession> session) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_sessions.push_back({std::move(name), std::move(session)});
}

int FakeNorvexAPI::destroy(INorvexSession* session) {
    std::string name = "null";
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (session)
            name = "an object that does not exist";
        for (auto owned = m_sessions.begin(); owned != m_sessions.end(); ++owned) {
            if (owned->session.get() == session) {
                name = owned->name;
                m_sessions.erase(owned);
                break;
            }
        }
    }
    called("Destroy", "Destroy(" + name + ")");
    return result("Destroy");
}

int FakeNorvexAPI::createSubscriber(NorvexSignalCallbackFunction callback,
                                    ISignalSubscriber** subscriber) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_pSubscriber = std::make_unique<FakeSignalSubscriber>();
        m_registered = callback;
        m_callback = callback;
        *subscriber = m_pSubscriber.get();
    }
    called("CreateSignalSubscriber", "CreateSignalSubscriber");
    return result("CreateSignalSubscriber", 0);
}

int FakeNorvexAPI::destroySubscriber(NorvexSignalCallbackFunction callback) {
    bool registered = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        registered = m_registered && m_registered == callback;
        m_registered = nullptr;
        m_pSubscriber.reset();
    }
    called("DestroySignalSubscriber",
           registered ? "DestroySignalSubscriber" : "DestroySignalSubscriber(not registered)");
    return result("DestroySignalSubscriber", 0);
}
