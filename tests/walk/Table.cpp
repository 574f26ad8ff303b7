#include "Table.h"

namespace walk {

namespace {

// What operations of the middleware answer: 1 for the most part, and everything else.
const std::vector<std::string> kResults = {"1",  "1", "1", "1",  "1",          "0",
                                           "-1", "2", "7", "-5", "2147483647", "-2147483648"};

Act of(Act::Kind kind, const std::string& text = "", const std::string& variable = "") {
    Act act{};
    act.kind = kind;
    act.text = text;
    act.variable = variable;
    return act;
}

} // namespace

Act Act::unflushed() const {
    Act act = *this;
    act.flushed = false;
    return act;
}

Act Act::as(const std::string& name) const {
    Act act = *this;
    act.aliases.push_back(name);
    return act;
}

Act Act::whileNull(const std::string& object, const std::string& word) const {
    Act act = *this;
    act.guarded = object;
    act.forced = word;
    return act;
}

Act say(const std::string& text) {
    return of(Act::Kind::Say, text);
}

Act note(const std::string& text) {
    return of(Act::Kind::Note, text);
}

Act call(const std::string& text, const std::string& result) {
    Act act = of(Act::Kind::Call, text, result);
    act.choices = kResults;
    return act;
}

Act gives(const std::string& operation, const std::string& variable,
          const std::vector<std::string>& choices) {
    Act act = of(Act::Kind::Gives, operation, variable);
    act.choices = choices;
    return act;
}

Act create(const std::string& object, const std::string& kind, const std::string& arguments,
           Making making) {
    Act act = of(Act::Kind::Create, kind, object);
    act.arguments = arguments;
    act.making = making;
    return act;
}

Act destroy(const std::string& object) {
    return of(Act::Kind::Destroy, "", object);
}

Act ask(const std::string& prompt, const std::string& variable, Form form) {
    Act act = of(Act::Kind::Ask, prompt, variable);
    act.form = form;
    return act;
}

Act set(const std::string& variable, const std::string& value, Form form) {
    Act act = of(Act::Kind::Set, value, variable);
    act.form = form;
    return act;
}

Act draw(const std::string& variable, const std::vector<std::string>& choices) {
    Act act = of(Act::Kind::Draw, "", variable);
    act.choices = choices;
    return act;
}

Act choose(const std::string& variable, const std::vector<Row>& rows) {
    Act act = of(Act::Kind::Choose, "", variable);
    act.rows = rows;
    return act;
}

Act loop(const Acts& acts) {
    Act act = of(Act::Kind::Loop);
    act.acts = acts;
    return act;
}

Act again() {
    return of(Act::Kind::Again);
}

Act leave() {
    return of(Act::Kind::Leave);
}

Act back() {
    return of(Act::Kind::Return);
}

Act run(TableOf table) {
    Act act = of(Act::Kind::Run);
    act.table = table;
    return act;
}

Act script(const std::string& what, const std::string& variable) {
    return of(Act::Kind::Script, what, variable);
}

Act eachRecord(const Acts& acts) {
    Act act = of(Act::Kind::EachRecord);
    act.acts = acts;
    return act;
}

Act eachItem(const Acts& acts) {
    Act act = of(Act::Kind::EachItem);
    act.acts = acts;
    return act;
}

Act eachWindow(const Acts& acts) {
    Act act = of(Act::Kind::EachWindow);
    act.acts = acts;
    return act;
}

} // namespace walk
