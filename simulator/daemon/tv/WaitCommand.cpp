#include <functional>
#include <memory>
#include <sstream>
#include <vector>

#include <base/Number.h>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"
#include "Json.h"

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

bool IsComparison(const std::string& text) {
    return text == "==" || text == "!=" || text == ">" || text == ">=" || text == "<" || text == "<=";
}

// A missing value is null, as is an element whose index no list can have.
json Find(const json& state, const json::json_pointer& pointer) {
    try {
        return state.contains(pointer) ? state.at(pointer) : json();
    } catch (const json::exception&) {
        return {};
    }
}

// Text that is not JSON is taken literally: `wait /source/name == HDMI1`.
json ToValue(const std::string& text) {
    json value;
    return ParseJson(text, value) ? value : json(text);
}

// Empty on failure, with the reason in `error`.
Condition MakeStateCondition(Context& context, const std::string& path, const std::string& comparison,
                             const json& value, std::string& error) {
    try {
        return [&context, path, pointer = json::json_pointer(path), comparison, value] {
            return Compare(Find(context.DescribeStateFor(path), pointer), comparison, value);
        };
    } catch (const json::exception&) {
        error = "malformed path '" + path + "'";
        return {};
    }
}

// This many calls since the start or the last reset.
Condition MakeCallsCondition(Context& context, const std::string& operation, std::uint64_t wanted, std::string& error) {
    const std::vector<Operation*> operations = context.dispatcher.FindOperations(operation);
    if (operations.empty()) {
        error = "unknown operation '" + operation + "'";
        return {};
    }
    return [operations, wanted] {
        std::uint64_t calls = 0;
        for (const Operation* each : operations)
            calls += each->calls;
        return calls >= wanted;
    };
}

// The condition may be one argument or several.
std::vector<std::string> Split(const std::vector<std::string>& arguments) {
    std::vector<std::string> tokens;
    for (const std::string& argument : arguments) {
        std::istringstream stream(argument);
        for (std::string token; stream >> token;)
            tokens.push_back(token);
    }
    return tokens;
}

std::string Join(const std::vector<std::string>& tokens, std::size_t first) {
    std::string text = tokens[first];
    for (std::size_t token = first + 1; token < tokens.size(); ++token)
        text += " " + tokens[token];
    return text;
}

class Wait {
public:
    Wait(Changes& changes, Condition condition, ControlConnection& connection, unsigned milliseconds)
        : m_changes(changes), m_condition(std::move(condition)), m_connection(connection) {
        m_listener = m_changes.AddListener([this] { Look(); });
        m_limit.Start(milliseconds, [this] {
            m_changes.RemoveListener(m_listener);
            m_connection.Fail("timed out");
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
        m_connection.Finish();
    }

    Changes& m_changes;
    Condition m_condition;
    ControlConnection& m_connection;
    std::uint64_t m_listener = 0;
    Timer m_limit;
};

struct Wanted {
    std::vector<std::string> condition;
    double seconds = 10;
};

void StartWait(Context& context, const Wanted& wanted, ControlConnection& connection) {
    const std::vector<std::string> tokens = Split(wanted.condition);
    std::uint64_t calls = 0;
    Condition condition;
    std::string error;
    if (tokens.size() == 3 && tokens[0] == "calls" && ParseNumber(tokens[2], calls))
        condition = MakeCallsCondition(context, tokens[1], calls, error);
    else if (tokens.size() >= 3 && tokens[0].starts_with('/') && IsComparison(tokens[1]))
        condition = MakeStateCondition(context, tokens[0], tokens[1], ToValue(Join(tokens, 2)), error);
    else
        return connection.Fail("expected \"/PATH == VALUE\" or \"calls INTERFACE.METHOD N\"",
                               CommandLine::kBadArguments);
    if (!condition)
        return connection.Fail(error);
    if (condition())
        return connection.Finish();
    // A busy TV may report the timeout late.
    constexpr double kMargin = 10;
    connection.SetLimit(wanted.seconds + kMargin);
    connection.Keep(std::make_shared<Wait>(context.changes, std::move(condition), connection,
                                           static_cast<unsigned>(wanted.seconds * 1000)));
}

} // namespace

void AddWaitCommand(Context& context) {
    context.commands.Add(
        "wait", "Wait for a value of the state or for calls; status 1 on timeout", [&](CommandLine& line) {
            auto wanted = std::make_shared<Wanted>();
            line.Texts("condition", wanted->condition, "CONDITION",
                       "\"/PATH == VALUE\" (or !=, >, >=, <, <=), or \"calls INTERFACE.METHOD N\": called N times "
                       "or more");
            line.Number("--timeout", wanted->seconds, 0, 86400, "SECONDS", "Timeout (10)");
            return [&context, wanted](ControlConnection& connection) { StartWait(context, *wanted, connection); };
        });
}

} // namespace sim
