#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <base/Number.h>
#include <nlohmann/json.hpp>

#include "Commands.h"
#include "Context.h"
#include "Json.h"

namespace sim {

using nlohmann::json;

namespace {

constexpr std::size_t kMaxCondition = 4096; // in bytes

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

// A condition: a part of the state, and in it a value that is compared.
struct Condition {
    std::string part;
    json::json_pointer pointer;
    std::string comparison;
    json value;

    bool Holds(const json& described) const { return Compare(Find(described, pointer), comparison, value); }
};

class Wait;

// All waits, by the part of the state that they need. A part is described once for all of them, and
// only when it may have changed; they are looked at when it has.
class Waits {
public:
    explicit Waits(Context& context) : m_context(context) {}

    bool Holds(const Condition& condition);
    void Add(const std::string& part, Wait& wait);
    void Remove(const std::string& part, Wait& wait);

private:
    struct Part {
        json last;
        std::set<Wait*> waits;
    };
    void Look(const std::string& name);

    Context& m_context;
    std::map<std::string, Part> m_parts;
};

class Wait {
public:
    Wait(std::shared_ptr<Waits> waits, Condition condition, ControlConnection& connection, unsigned milliseconds)
        : m_waits(std::move(waits)), m_condition(std::move(condition)), m_connection(connection) {
        m_waits->Add(m_condition.part, *this);
        m_limit.Start(milliseconds, [this] {
            m_waits->Remove(m_condition.part, *this);
            m_connection.Fail("timed out");
        });
    }
    ~Wait() { m_waits->Remove(m_condition.part, *this); }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

    bool Holds(const json& described) const { return m_condition.Holds(described); }
    void Finish() {
        m_waits->Remove(m_condition.part, *this);
        m_limit.Stop();
        m_connection.Finish();
    }

private:
    std::shared_ptr<Waits> m_waits;
    Condition m_condition;
    ControlConnection& m_connection;
    Timer m_limit;
};

bool Waits::Holds(const Condition& condition) {
    // Those that wait already see what this one sees; a part that is known is then as described last.
    m_context.changes.TellAll();
    const auto known = m_parts.find(condition.part);
    return condition.Holds(known == m_parts.end() ? m_context.DescribePart(condition.part) : known->second.last);
}

void Waits::Add(const std::string& part, Wait& wait) {
    const auto [added, isNew] = m_parts.try_emplace(part);
    added->second.waits.insert(&wait);
    if (isNew) {
        added->second.last = m_context.DescribePart(part);
        m_context.changes.Watch(part, [this, part] { Look(part); });
    }
}

void Waits::Remove(const std::string& part, Wait& wait) {
    const auto found = m_parts.find(part);
    if (found == m_parts.end() || found->second.waits.erase(&wait) == 0 || !found->second.waits.empty())
        return;
    m_parts.erase(found);
    m_context.changes.Unwatch(part);
}

void Waits::Look(const std::string& name) {
    Part& part = m_parts.at(name);
    json described = m_context.DescribePart(name);
    if (described == part.last)
        return;
    part.last = std::move(described);
    std::vector<Wait*> done;
    std::copy_if(part.waits.begin(), part.waits.end(), std::back_inserter(done),
                 [&](const Wait* wait) { return wait->Holds(part.last); });
    for (Wait* wait : done)
        wait->Finish();
}

struct Wanted {
    std::vector<std::string> condition;
    double seconds = 10;
};

// "/PATH == VALUE": the part is its component and the name of the value in it.
bool ParseStateCondition(const std::vector<std::string>& tokens, Condition& condition, std::string& error) {
    const std::string& path = tokens[0];
    const std::size_t second = path.find('/', 1);
    const std::size_t end = second == std::string::npos ? second : path.find('/', second + 1);
    condition.part = path.substr(0, end);
    condition.comparison = tokens[1];
    condition.value = ToValue(Join(tokens, 2));
    try {
        static_cast<void>(json::json_pointer(condition.part));
        condition.pointer = json::json_pointer(end == std::string::npos ? "" : path.substr(end));
        return true;
    } catch (const json::exception&) {
        error = "malformed path '" + path + "'";
        return false;
    }
}

// "calls INTERFACE.METHOD N": this many calls since the start or the last reset.
bool ParseCallsCondition(const Context& context, const std::string& name, std::uint64_t wanted, Condition& condition,
                         std::string& error) {
    const std::vector<Operation*> operations = context.dispatcher.FindOperations(name);
    if (operations.empty()) {
        error = "unknown operation '" + name + "'";
        return false;
    }
    const Operation& operation = *operations.front();
    condition = {"calls/" + operation.interface->GetName() + "." + operation.name, json::json_pointer(), ">=", wanted};
    return true;
}

void StartWait(Context& context, const std::shared_ptr<Waits>& waits, const Wanted& wanted,
               ControlConnection& connection) {
    const std::vector<std::string> tokens = Split(wanted.condition);
    std::size_t size = 0;
    for (const std::string& token : tokens)
        size += token.size() + 1;
    if (size > kMaxCondition)
        return connection.Fail("the condition is too long: " + std::to_string(size) + " bytes, expected at most " +
                                   std::to_string(kMaxCondition),
                               CommandLine::kBadArguments);
    std::uint64_t calls = 0;
    Condition condition;
    std::string error;
    bool parsed = false;
    if (tokens.size() == 3 && tokens[0] == "calls" && ParseNumber(tokens[2], calls))
        parsed = ParseCallsCondition(context, tokens[1], calls, condition, error);
    else if (tokens.size() >= 3 && tokens[0].starts_with('/') && IsComparison(tokens[1]))
        parsed = ParseStateCondition(tokens, condition, error);
    else
        return connection.Fail("expected \"/PATH == VALUE\" or \"calls INTERFACE.METHOD N\"",
                               CommandLine::kBadArguments);
    if (!parsed)
        return connection.Fail(error);
    if (waits->Holds(condition))
        return connection.Finish();
    // A busy TV may report the timeout late.
    constexpr double kMargin = 10;
    connection.SetLimit(wanted.seconds + kMargin);
    connection.Keep(
        std::make_shared<Wait>(waits, std::move(condition), connection, static_cast<unsigned>(wanted.seconds * 1000)));
}

} // namespace

void AddWaitCommand(Context& context) {
    context.commands.Add(
        "wait", "Wait for a value of the state or for calls; status 1 on timeout",
        [&context, waits = std::make_shared<Waits>(context)](CommandLine& line) {
            auto wanted = std::make_shared<Wanted>();
            line.Texts("condition", wanted->condition, "CONDITION",
                       "\"/PATH == VALUE\" (or !=, >, >=, <, <=), or \"calls INTERFACE.METHOD N\": called N times "
                       "or more");
            line.Number("--timeout", wanted->seconds, 0, 86400, "SECONDS", "Timeout (10)");
            return [&context, waits, wanted](ControlConnection& connection) {
                StartWait(context, waits, *wanted, connection);
            };
        });
}

} // namespace sim
