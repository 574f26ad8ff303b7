#include <functional>
#include <memory>

#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"
#include "ControlConnection.h"

namespace sim {

using nlohmann::json;

namespace {

using Condition = std::function<bool()>;

bool Compare(const json& left, const std::string& comparison, const json& right) {
    if (comparison == "==")
        return left == right;
    if (comparison == "!=")
        return left != right;
    if (!left.is_number() || !right.is_number())
        return false;
    if (comparison == ">")
        return left > right;
    if (comparison == ">=")
        return left >= right;
    if (comparison == "<")
        return left < right;
    return left <= right;
}

bool IsComparison(const std::string& word) {
    return word == "==" || word == "!=" || word == ">" || word == ">=" || word == "<" ||
           word == "<=";
}

// {"path": "/debug/qos", "comparison": "==", "value": true}: a place that is not there compares as
// null.
Condition MakeStateCondition(Context& context, const json& request) {
    const auto path = request.at("path").get<std::string>();
    const json::json_pointer pointer(path);
    const auto comparison = request.at("comparison").get<std::string>();
    if (!IsComparison(comparison))
        throw std::invalid_argument("\"" + comparison + "\" compares nothing");
    return [&context, path, pointer, comparison, value = request.at("value")] {
        const json state = context.DescribeStateFor(path);
        return Compare(state.contains(pointer) ? state.at(pointer) : json(), comparison, value);
    };
}

// {"method": "IAVControl.MuteVideo", "calls": 3}: so many since the start or the last reset.
Condition MakeCallsCondition(Context& context, const json& request) {
    const std::vector<Operation*> methods =
        context.dispatcher.FindOperations(request.at("method").get<std::string>());
    if (methods.empty())
        throw std::invalid_argument("no such operation");
    return [methods, wanted = request.at("calls").get<std::uint64_t>()] {
        std::uint64_t calls = 0;
        for (const Operation* method : methods)
            calls += method->calls;
        return calls >= wanted;
    };
}

class Wait {
public:
    Wait(Changes& changes, Condition condition, ControlConnection& asker, unsigned milliseconds)
        : m_changes(changes), m_condition(std::move(condition)), m_asker(asker) {
        m_listener = m_changes.AddListener([this] { Look(); });
        m_limit.Start(milliseconds, [this] {
            m_changes.RemoveListener(m_listener);
            m_asker.Fail("timed out");
        });
    }
    ~Wait() { m_changes.RemoveListener(m_listener); }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

private:
    void Look() {
        if (!m_condition())
            return;
        m_changes.RemoveListener(m_listener);
        m_limit.Stop();
        m_asker.Answer(json::object());
    }

    Changes& m_changes;
    Condition m_condition;
    ControlConnection& m_asker;
    std::uint64_t m_listener = 0;
    Timer m_limit;
};

} // namespace

void AddWaitCommand(Context& context) {
    context.commands.Add("wait", [&context](const json& request, ControlConnection& asker) {
        Condition condition = request.contains("path") ? MakeStateCondition(context, request)
                                                       : MakeCallsCondition(context, request);
        if (condition())
            return asker.Answer(json::object());
        asker.Keep(std::make_shared<Wait>(context.changes, std::move(condition), asker,
                                          request.value("timeout", 10000u)));
    });
}

} // namespace sim
