#include "Interpreter.h"

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <sstream>
#include <stdexcept>

#include "Numbers.h"

namespace walk {

namespace {

using Kind = Act::Kind;

// The operation's name without the number of its object: "AVControl#2.MuteVideo(5)" is
// "AVControl.MuteVideo".
std::string operationOf(const std::string& call) {
    std::string name = call.substr(0, call.find('('));
    const std::size_t number = name.find('#');
    if (number != std::string::npos)
        name.erase(number, name.find('.') - number);
    return name;
}

// The rows that the word of `ask` can lead to, by choices from `at` on and within their rows.
void collectRows(const Act& ask, const Acts& acts, std::size_t at, std::vector<const Row*>& rows) {
    for (; at < acts.size(); ++at) {
        const Act& choice = acts[at];
        const bool isByWord =
            choice.variable == ask.variable ||
            std::find(ask.aliases.begin(), ask.aliases.end(), choice.variable) != ask.aliases.end();
        if (choice.kind != Kind::Choose)
            continue;
        for (const Row& row : choice.rows) {
            if (isByWord)
                rows.push_back(&row);
            collectRows(ask, row.acts, 0, rows);
        }
    }
}

} // namespace

Interpreter::Interpreter(std::uint64_t seed, const Table& signals, Words& words, Coverage& coverage)
    : m_signals(signals), m_lots(seed), m_words(words), m_coverage(coverage) {
    m_session.seed = seed;
}

Session Interpreter::run(const Table& entry) {
    const auto drawn = [this](const std::string& what, const std::vector<std::string>& choices) {
        return m_variables[what] = m_lots.oneOf(what, choices);
    };
    m_session.markerThere = drawn("marker", {"there", "absent"}) == "there";
    m_session.readOnly = drawn("disk", {"writable", "writable", "read-only"}) == "read-only";
    m_session.signedDigits = drawn("signs", {"yes", "no", "no"}) == "yes";
    m_session.viewers =
        drawn("viewers", {"there", "missing", "no process", "no process", "no process"});
    m_variables["console"] = "closed";
    m_table = entry.name;
    runActs(entry.acts);
    m_session.end = m_now;
    m_session.kept = m_objects;
    return std::move(m_session);
}

Interpreter::Flow Interpreter::runActs(const Acts& acts) {
    for (std::size_t at = 0; at < acts.size(); ++at) {
        const Flow flow = runAct(acts, at);
        if (flow != Flow::Next)
            return flow;
    }
    return Flow::Next;
}

Interpreter::Flow Interpreter::runAct(const Acts& acts, std::size_t at) {
    const Act& act = acts[at];
    switch (act.kind) {
    case Kind::Say:
        (m_pLine ? *m_pLine : m_now.expected) += expanded(act.text);
        break;
    case Kind::Note:
        note(expanded(act.text));
        break;
    case Kind::Call:
        called(act);
        break;
    case Kind::Gives:
        gives(act);
        break;
    case Kind::Create:
        created(act);
        break;
    case Kind::Destroy:
        destroyed(act);
        break;
    case Kind::Ask:
        asked(acts, at);
        break;
    case Kind::Set:
        m_variables[act.variable] =
            numbers::formed(expanded(act.text), act.form, m_session.signedDigits);
        break;
    case Kind::Draw:
        m_variables[act.variable] = m_lots.oneOf(act.variable, act.choices);
        break;
    case Kind::Choose:
        return chosen(act);
    case Kind::Loop:
        return looped(act.acts);
    case Kind::Again:
        return Flow::Again;
    case Kind::Leave:
        return Flow::Leave;
    case Kind::Return:
        return Flow::Return;
    case Kind::Run: {
        const std::string caller = m_table;
        m_table = act.table().name;
        runActs(act.table().acts);
        m_table = caller;
        break;
    }
    case Kind::Script:
        scripted(act);
        break;
    case Kind::EachRecord:
        for (m_record = 0; m_record < m_records.size(); ++m_record)
            runActs(act.acts);
        m_record = 0;
        break;
    case Kind::EachItem:
        for (std::size_t i = 0; i < m_items.size(); ++i) {
            m_variables["index"] = std::to_string(i);
            m_variables["name"] = m_items[i].name;
            m_variables["state"] = m_items[i].state ? "ON" : "OFF";
            runActs(act.acts);
        }
        break;
    case Kind::EachWindow:
        for (const int window : m_windows) {
            m_variables["window"] = std::to_string(window);
            runActs(act.acts);
        }
        break;
    }
    return Flow::Next;
}

Interpreter::Flow Interpreter::chosen(const Act& act) {
    const std::string& value = get(act.variable);
    for (const Row& row : act.rows) {
        const bool leadsHere =
            row.values.empty() ||
            std::any_of(row.values.begin(), row.values.end(), [&](const std::string& pattern) {
                return numbers::matches(value, pattern);
            });
        if (leadsHere) {
            m_coverage.visit(row);
            return runActs(row.acts);
        }
    }
    throw std::logic_error(m_table + ": no row for " + act.variable + " = " + value);
}

Interpreter::Flow Interpreter::looped(const Acts& acts) {
    for (;;) {
        const Flow flow = runActs(acts);
        if (flow == Flow::Leave)
            return Flow::Next;
        if (flow == Flow::Return)
            return flow;
    }
}

void Interpreter::asked(const Acts& acts, std::size_t at) {
    const Act& act = acts[at];
    m_now.expected += expanded(act.text);
    m_now.flushed = act.flushed;
    m_now.place = m_table;

    Asked asked{act.form, {}};
    collectRows(act, acts, at + 1, asked.rows);
    Word word = m_words.next(asked);
    if (!act.guarded.empty() && is(act.guarded, "null"))
        word.text = act.forced;
    typed(word);
    m_variables["word"] = word.text;
    m_variables[act.variable] = numbers::formed(word.text, act.form, m_session.signedDigits);
}

void Interpreter::typed(const Word& word) {
    // A signal that comes in while the console goes on is seen in any place: it may come only where
    // the console stays open until the next word.
    const bool isOpen = is("console", "open");
    if (m_wasOpen && isOpen && m_lots.rarely("signal meanwhile", 16)) {
        const Signal signal = drawnSignal();
        m_session.steps.back().meanwhile.push_back(signal);
        m_now.loose.push_back(signal.line);
    }
    m_wasOpen = isOpen;

    Step step = std::move(m_now);
    m_now = {};
    step.word = word;
    m_lots.wordTyped(word.number);
    m_silent.clear();
    if (isOpen && m_lots.rarely("signal before", 12)) {
        step.before.push_back(drawnSignal());
        m_now.expected += step.before.back().line;
    }
    m_session.steps.push_back(std::move(step));
    m_now.expected += "{typed " + word.text + "}";
}

void Interpreter::called(const Act& act) {
    const std::string call = expanded(act.text);
    if (call.starts_with("null."))
        throw std::logic_error(m_table + ": " + act.text + " on no object");
    const std::string operation = operationOf(call);
    note(call);
    const std::string result = m_lots.oneOf(operation, act.choices);
    m_variables[act.variable] = result;
    answer(
        {.kind = Answer::Kind::Result, .operation = operation, .number = numbers::value(result)});
}

// The fake's values stand in a queue: after a call that gives nothing there can be none that does.
void Interpreter::gives(const Act& act) {
    const std::string value = m_lots.oneOf(act.text + " gives", act.choices);
    if (value.empty())
        m_silent.insert(act.text);
    if (m_silent.contains(act.text))
        return;
    m_variables[act.variable] = value;
    answer({.kind = Answer::Kind::Value, .operation = act.text, .number = numbers::value(value)});
}

void Interpreter::created(const Act& act) {
    static const std::vector<std::string> results = {"0", "0", "0", "0", "0", "0", "-1", "1"};
    const std::string factory = "Create" + act.text;
    const std::string result = m_lots.oneOf(factory, results);
    bool withObject = true;
    if (act.making == Making::MayBeNull)
        withObject = !m_lots.rarely(factory + " object", 4);
    else if (act.making == Making::Checked && result != "0")
        withObject = m_lots.rarely(factory + " object", 2);

    std::string object = "null";
    if (withObject) {
        const int number = ++m_made[act.text];
        object = number == 1 ? act.text : act.text + "#" + std::to_string(number);
        m_objects.push_back(object);
    }
    m_variables[act.variable] = object;
    m_variables["made"] = result;
    note(factory + "(" + expanded(act.arguments) + ")");
    answer({.kind = Answer::Kind::Creation,
            .operation = factory,
            .number = numbers::value(result),
            .flag = withObject});
}

void Interpreter::destroyed(const Act& act) {
    const std::string object = get(act.variable);
    if (object == "null")
        return;
    std::erase(m_objects, object);
    note("Destroy(" + object + ")");
    static const std::vector<std::string> results = {"1", "1", "0", "-1"};
    answer({.kind = Answer::Kind::Result,
            .operation = "Destroy",
            .number = numbers::value(m_lots.oneOf("Destroy", results))});
}

void Interpreter::note(const std::string& call) {
    m_now.expected += "{" + call + "}";
}

// Before the first word nothing is answered but in the fakes' own way.
void Interpreter::answer(const Answer& answer) {
    if (!m_session.steps.empty())
        m_session.steps.back().answers.push_back(answer);
}

std::string Interpreter::expanded(const std::string& text) const {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != '$') {
            result += text[at++];
            continue;
        }
        ++at;
        const bool hex = text[at] == '#';
        if (hex)
            ++at;
        std::size_t width = 0;
        while (std::isdigit(static_cast<unsigned char>(text[at])) != 0)
            width = width * 10 + static_cast<std::size_t>(text[at++] - '0');
        if (text[at] == '<')
            ++at;
        const std::size_t begin = at;
        while (at < text.size() && std::isalpha(static_cast<unsigned char>(text[at])) != 0)
            ++at;
        std::string value = get(text.substr(begin, at - begin));
        if (hex) {
            std::ostringstream digits;
            digits << "0x" << std::hex << std::setfill('0') << std::setw(16)
                   << static_cast<unsigned long long>(numbers::value(value));
            value = digits.str();
        }
        if (value.size() < width)
            value.resize(width, ' ');
        result += value;
    }
    return result;
}

const std::string& Interpreter::get(const std::string& name) const {
    const auto variable = m_variables.find(name);
    if (variable == m_variables.end())
        throw std::logic_error(m_table + ": nothing is known of $" + name);
    return variable->second;
}

bool Interpreter::is(const std::string& name, const std::string& value) const {
    return get(name) == value;
}

} // namespace walk
