#include "FakeNorvexAPI.h"

#include <algorithm>
#include <cstdlib>

#include "CallText.h"
#include "Timeline.h"

using CallText::Call;

namespace {

FakeNorvexAPI* theFake = nullptr;

template <typename Value> std::optional<Value> Take(std::deque<Value>& script) {
    if (script.empty())
        return std::nullopt;
    Value value = std::move(script.front());
    script.pop_front();
    return value;
}

class FakeSignalSubscriber : public ISignalSubscriber {
public:
    int Subscribe(ESignalType type, int mode, int filter, int profile, int screen) override {
        return Answer("SignalSubscriber.Subscribe", type, mode, filter, profile, screen);
    }
    int Unsubscribe(ESignalType type, int filter, int profile, int screen) override {
        return Answer("SignalSubscriber.Unsubscribe", type, filter, profile, screen);
    }

private:
    template <typename... Arguments> static int Answer(const std::string& operation, Arguments... arguments) {
        FakeNorvexAPI::Current().NoteCall(operation, Call(operation, arguments...));
        return FakeNorvexAPI::Current().TakeResult(operation);
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

FakeNorvexAPI& FakeNorvexAPI::Current() {
    if (!theFake)
        std::abort();
    return *theFake;
}

void FakeNorvexAPI::Answer(const std::string& operation, const std::vector<int>& results) {
    m_results[operation].insert(m_results[operation].end(), results.begin(), results.end());
}

void FakeNorvexAPI::Give(const std::string& operation, const std::vector<std::int64_t>& values) {
    m_values[operation].insert(m_values[operation].end(), values.begin(), values.end());
}

std::vector<std::string> FakeNorvexAPI::GetKept() const {
    std::vector<std::string> names;
    for (const Owned& owned : m_sessions)
        names.push_back(owned.name);
    return names;
}

void FakeNorvexAPI::NoteCall(const std::string& operation, const std::string& call) {
    Timeline::Now().Call(call);
    if (const auto action = Take(m_actions[operation]))
        (*action)();
}

int FakeNorvexAPI::TakeResult(const std::string& operation, int otherwise) {
    return Take(m_results[operation]).value_or(otherwise);
}

std::optional<std::int64_t> FakeNorvexAPI::TakeValue(const std::string& operation) {
    return Take(m_values[operation]);
}

std::optional<FakeRecord> FakeNorvexAPI::TakeFound() {
    return Take(m_found);
}

std::optional<FakeProgram> FakeNorvexAPI::TakeProgram() {
    return Take(m_programs);
}

int FakeNorvexAPI::Create(const std::string& kind, const std::string& arguments, bool wasNull,
                          const std::function<void(const std::string&, Owned&)>& make) {
    const std::string factory = "Create" + kind;
    const Creation creation = Take(m_creations[factory]).value_or(Creation{});
    if (creation.withObject) {
        const auto isAlive = [this](const std::string& name) {
            return std::any_of(m_sessions.begin(), m_sessions.end(),
                               [&](const Owned& owned) { return owned.name == name; });
        };
        std::string name = kind;
        for (int number = 2; isAlive(name); ++number)
            name = kind + "#" + std::to_string(number);
        make(name, m_sessions.emplace_back(Owned{name, nullptr}));
    }
    NoteCall(factory, factory + arguments + (wasNull ? "" : " into a pointer that was not null"));
    return creation.result;
}

int FakeNorvexAPI::Destroy(INorvexSession* session) {
    std::string name = session ? "an object that does not exist" : "null";
    const auto owned = std::find_if(m_sessions.begin(), m_sessions.end(),
                                    [session](const Owned& each) { return each.session.get() == session; });
    if (owned != m_sessions.end()) {
        name = owned->name;
        m_sessions.erase(owned);
    }
    NoteCall("Destroy", "Destroy(" + name + ")");
    return TakeResult("Destroy");
}

int FakeNorvexAPI::CreateSubscriber(NorvexSignalCallbackFunction callback, ISignalSubscriber** subscriber) {
    m_subscriber = std::make_unique<FakeSignalSubscriber>();
    *subscriber = m_subscriber.get();
    m_callback = m_registered = callback;
    NoteCall("CreateSignalSubscriber", "CreateSignalSubscriber");
    return TakeResult("CreateSignalSubscriber", 0);
}

int FakeNorvexAPI::DestroySubscriber(NorvexSignalCallbackFunction callback) {
    const bool isRegistered = m_registered && m_registered == callback;
    m_registered = nullptr;
    m_subscriber.reset();
    NoteCall("DestroySignalSubscriber",
             isRegistered ? "DestroySignalSubscriber" : "DestroySignalSubscriber(not registered)");
    return TakeResult("DestroySignalSubscriber", 0);
}
