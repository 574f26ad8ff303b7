// What the interpreter draws beyond single numbers, and hands to the fakes.

#include "Interpreter.h"

#include <stdexcept>

#include "Numbers.h"

namespace walk {

namespace {

constexpr int kServiceId = 12;
constexpr int kFrequency = 4;
constexpr int kMajor = 13;
constexpr int kMinor = 14;

const std::vector<std::string> kServiceIds = {"1",
                                              "45",
                                              "1000",
                                              "4294967296",
                                              "18014398509613101",
                                              "1152921504606846976",
                                              "9223372036854775807",
                                              "9223372036854775808",
                                              "18446744073709551614",
                                              "18446744073709551615",
                                              "0"};
const std::vector<std::string> kFieldNumbers = {"0",  "1",  "7",          "11",         "474000",
                                                "-1", "-9", "2147483647", "-2147483648"};
const std::vector<std::string> kNames = {"Tuner",
                                         "QoS",
                                         "",
                                         "Seventeen letters",
                                         "Eighteen letters, 1",
                                         "A name that is much longer than its column in the menu",
                                         "T\xc3\xbcner",
                                         "\xf0\x9f\x93\xba",
                                         "  blanks  ",
                                         "\"quoted\\\"",
                                         "%s%n",
                                         "tab\there"};

} // namespace

void Interpreter::scripted(const Act& act) {
    const std::string& what = act.text;
    if (what == "found record") {
        m_records = {drawnRecord()};
        m_record = 0;
        // Sometimes the look-up stores nothing at all: the record stays as it was made.
        if (m_lots.rarely("record", 8))
            m_records[0].hasTable = false;
        else
            answer({.kind = Answer::Kind::Found, .operation = {}, .records = m_records});
    } else if (what == "fresh record") {
        m_records = {Record{.hasTable = false, .fields = {}}};
        m_record = 0;
    } else if (what == "service list") {
        drawServices();
    } else if (what == "field") {
        lookField(act.variable);
    } else if (what == "program") {
        drawProgram();
    } else if (what == "tv mode") {
        m_variables["antenna"] = m_lots.oneOf("antenna", {"0", "1", "2", "-1"});
        m_variables["serviceMode"] = m_lots.oneOf("service mode", {"0", "0", "1", "2", "-1"});
        answer({.kind = Answer::Kind::TvMode,
                .operation = {},
                .number = numbers::value(get("antenna")),
                .second = numbers::value(get("serviceMode"))});
    } else if (what == "window id") {
        m_variables["windowId"] = m_lots.oneOf("window id", {"0", "1", "4711", "-3", "2147483647"});
        answer({.kind = Answer::Kind::Vconf,
                .operation = act.variable,
                .number = numbers::value(get("windowId"))});
    } else if (what == "zoom windows") {
        drawWindows();
    } else if (what == "items") {
        drawItems();
    } else if (what == "no items") {
        m_items.clear();
    } else if (what == "picked item") {
        pickItem();
    } else if (what == "reply") {
        reply(act.variable);
    } else if (what == "one less") {
        m_variables[act.variable] = std::to_string(numbers::value(get(act.variable)) - 1);
    } else if (what == "open library") {
        answer({.kind = Answer::Kind::Open,
                .operation = {},
                .flag = !m_lots.rarely("open library", 2)});
    } else if (what == "signal within") {
        if (m_lots.rarely("signal within", 3)) {
            const Signal signal = drawnSignal();
            m_now.expected += signal.line;
            answer({.kind = Answer::Kind::Within, .operation = act.variable, .signal = signal});
        }
    } else {
        throw std::logic_error(m_table + ": nothing is known of \"" + what + "\"");
    }
}

Record Interpreter::drawnRecord() {
    Record record;
    record.hasTable = !m_lots.rarely("table", 10);
    for (const int tag : {kServiceId, kFrequency, kMajor, kMinor}) {
        const std::string kind =
            m_lots.oneOf("field", {"value", "value", "value", "value", "no data", "absent"});
        if (kind == "no data")
            record.fields[tag] = std::nullopt;
        else if (kind == "value")
            record.fields[tag] = numbers::value(
                m_lots.oneOf("value", tag == kServiceId ? kServiceIds : kFieldNumbers));
    }
    return record;
}

void Interpreter::drawServices() {
    static const std::vector<std::string> counts = {"0", "0", "1", "2", "3", "12"};
    m_records.clear();
    const std::int64_t count = numbers::value(m_lots.oneOf("services", counts));
    for (std::int64_t i = 0; i < count; ++i)
        m_records.push_back(drawnRecord());
    m_record = 0;
    m_variables["records"] = std::to_string(m_records.size());
    answer({.kind = Answer::Kind::Services, .operation = {}, .records = m_records});
}

// "field" tells what there is of the current record's field, "value" has it.
void Interpreter::lookField(const std::string& tag) {
    const Record& record = m_records.at(m_record);
    const int number = std::stoi(tag);
    m_variables["tag"] = tag;
    const auto field = record.fields.find(number);
    if (!record.hasTable) {
        m_variables["field"] = "no table";
    } else if (field == record.fields.end()) {
        m_variables["field"] = "absent";
    } else if (!field->second) {
        m_variables["field"] = "no data";
    } else {
        m_variables["field"] = "there";
        m_variables["value"] = number == kServiceId
                                   ? std::to_string(static_cast<std::uint64_t>(*field->second))
                                   : std::to_string(*field->second);
    }
}

// Programmes stand in a queue: after a call without one there can be none with one.
void Interpreter::drawProgram() {
    static const std::vector<std::string> lengths = {"0", "1", "12", "254", "255", "70000"};
    const std::string kind =
        m_lots.oneOf("program", {"titled", "titled", "titled", "titled", "titled", "untitled",
                                 "untitled", "untitled", "none"});
    m_variables["title"] = "none";
    if (kind == "none")
        m_silent.insert("program");
    if (m_silent.contains("program"))
        return;
    if (kind == "titled") {
        m_variables["title"] = "given";
        m_variables["length"] = m_lots.oneOf("length", lengths);
    }
    answer({.kind = Answer::Kind::Program,
            .operation = {},
            .number = kind == "titled" ? numbers::value(get("length")) : 0,
            .flag = kind == "titled"});
}

void Interpreter::drawItems() {
    static const std::vector<std::string> counts = {"0", "1", "2", "3", "5", "12"};
    std::int64_t count = numbers::value(m_lots.oneOf("items", counts));
    if (m_lots.rarely("many items", 25))
        count = 99 + static_cast<std::int64_t>(m_lots.draw("how many") % 4);
    m_items.clear();
    for (std::int64_t i = 0; i < count; ++i) {
        m_items.push_back({m_lots.oneOf("name", kNames), m_lots.rarely("state", 2),
                           static_cast<unsigned int>(m_lots.draw("id"))});
    }
}

// Flips the item that "n" is the number of; "picked" tells whether there is one.
void Interpreter::pickItem() {
    const std::string& n = get("n");
    const std::int64_t number = n == "bad" ? -1 : numbers::value(n);
    if (number < 0 || number >= static_cast<std::int64_t>(m_items.size())) {
        m_variables["picked"] = "none";
        return;
    }
    Item& item = m_items[static_cast<std::size_t>(number)];
    item.state = !item.state;
    m_variables["picked"] = "item";
    m_variables["name"] = item.name;
    m_variables["state"] = item.state ? "01" : "00";
    m_variables["id"] = std::to_string(item.id);
}

void Interpreter::drawWindows() {
    static const std::vector<std::string> counts = {"0", "1", "2", "9"};
    static const std::vector<std::string> ids = {"0", "1", "3", "5", "-1", "2147483647"};
    m_windows.clear();
    const std::int64_t count = numbers::value(m_lots.oneOf("windows", counts));
    for (std::int64_t i = 0; i < count; ++i)
        m_windows.push_back(static_cast<int>(numbers::value(m_lots.oneOf("window", ids))));
    answer({.kind = Answer::Kind::ZoomWindows, .operation = {}, .ids = m_windows});
}

// A reply of the far side, made of "exchange", "status" and what else the method has.
void Interpreter::reply(const std::string& method) {
    Answer reply{.kind = Answer::Kind::Reply, .operation = method, .flag = is("exchange", "works")};
    if (!is("status", "none"))
        reply.status = numbers::value(get("status"));
    if (method == "Start" || method == "Execute") {
        if (!is("shown", "none"))
            reply.screen = get("shown");
    } else if (method == "GetMenuItems") {
        if (!is("listed", "no"))
            reply.items = m_items;
    } else if (method == "IsQoSEnabled") {
        reply.status.reset();
        if (!is("qos", "none"))
            reply.answer = is("qos", "true");
    }
    answer(reply);
}

Signal Interpreter::drawnSignal() {
    Signal signal;
    const auto drawn = [this](const std::string& what, const std::vector<std::string>& choices) {
        return numbers::value(m_variables[what] = m_lots.oneOf(what, choices));
    };
    signal.type = static_cast<int>(drawn("signal", {"81", "193", "194", "195", "82", "0", "-1"}));
    signal.profile = static_cast<int>(drawn("signalProfile", {"1", "101", "401", "0", "-1"}));
    signal.screen = static_cast<unsigned short>(drawn("signalScreen", {"0", "1", "65535"}));
    signal.data = m_lots.draw("payload");
    if (m_lots.rarely("plain payload", 2))
        signal.data &= 0xffff0000ffff0000ULL;
    m_variables["payload"] = std::to_string(signal.data);

    m_pLine = &signal.line;
    runActs(m_signals.acts);
    m_pLine = nullptr;
    return signal;
}

} // namespace walk
