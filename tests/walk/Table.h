#pragma once

#include <string>
#include <vector>

// The tables of the menus: what each says, asks for and calls, as data. Nothing here comes from the
// console's sources; the tables are written from what the console promises to those who use it.
//
// A table is a list of acts, done in order. Variables are texts and belong to the session; in the
// texts of the acts, "$name" stands for a variable's value, "$#name" for 16 hexadecimal digits of
// it, "$17<name" for its value filled up with blanks to 17 bytes.
namespace walk {

struct Act;
using Acts = std::vector<Act>;

// One way on from a choice. What the walk has visited is counted row by row.
struct Row {
    std::string name;
    // The values that lead here, each one text or a range of numbers, "0..47". None: every value
    // that leads to no row above.
    std::vector<std::string> values;
    Acts acts;
};

struct Table {
    std::string name;
    Acts acts;
};
// Tables lead into each other, so each is had by way of a function.
using TableOf = const Table& (*)();

// How a value is made of a text.
enum class Form {
    Same,
    // The word is the text as it stands.
    Word,
    // Decimal digits alone; the low 32 bits, signed. "bad" for other words.
    DigitsOnly,
    // The same, and numbers with a sign in a session whose number test takes them.
    Digits,
    // As a stream reads an int: blanks and a sign, digits, an end of any kind. "bad" without.
    Int,
    // The same, -1 for what is bad.
    Command,
    // The low 16 bits of that.
    Channel,
    // What Int leaves behind: 0 where nothing was read, the limit where it is too large.
    LeftByInt,
    // As strtol in base 10, the low 32 bits, signed; and the low 16, unsigned.
    Long,
    LongLow16,
    // Of a number: its low 16 bits; a signed field of 16 bits; its low 8 bits.
    Low16,
    Field0,
    Field16,
    Field32,
    Low8,
    // How the faked core library writes down a text and a number of 4 bytes that travel.
    TextTree,
    Hex32,
};

// What a factory of the middleware may do.
enum class Making {
    // An object each time, whatever the result: the console uses it without a look.
    Always,
    // The console looks at the result; where that is a failure there may be no object.
    Checked,
    // The console looks at the object.
    MayBeNull,
};

struct Act {
    enum class Kind {
        Say,
        Note,
        Call,
        Gives,
        Create,
        Destroy,
        Ask,
        Set,
        Draw,
        Choose,
        Loop,
        Again,
        Leave,
        Return,
        Run,
        Script,
        EachRecord,
        EachItem,
        EachWindow,
    };
    Kind kind;
    // What is said, called or asked; the value of a variable.
    std::string text;
    // The variable that is set, or chosen by.
    std::string variable;
    // Ask: other variables that are made of the same word.
    std::vector<std::string> aliases;
    // Create: what the factory is called with.
    std::string arguments;
    // Ask: while this object is null, the word is `forced`.
    std::string guarded;
    std::string forced;
    Form form = Form::Same;
    Making making = Making::Always;
    bool flushed = true;
    // What may be drawn, each as likely as the others.
    std::vector<std::string> choices;
    std::vector<Row> rows;
    Acts acts;
    TableOf table = nullptr;

    // Ask: at this prompt nothing has been flushed.
    Act unflushed() const;
    // Ask: a later choice by `name` is one by this word as well.
    Act as(const std::string& name) const;
    // Ask: without the object in `object`, only `word` can be typed.
    Act whileNull(const std::string& object, const std::string& word) const;
};

// Bytes on the console.
Act say(const std::string& text);
// A call without a result that matters.
Act note(const std::string& text);
// A call of an operation, e.g. "$av.MuteVideo(5)". Its result is drawn and stands in `result`.
Act call(const std::string& text, const std::string& result = "ret");
// The next call of `operation` stores one of `choices` in its out argument, or nothing (where the
// choice is empty); `variable` has it, and keeps its value otherwise.
Act gives(const std::string& operation, const std::string& variable,
          const std::vector<std::string>& choices);
// A call of the factory "Create<kind>"; `object` is the object's name or "null", "made" the result.
Act create(const std::string& object, const std::string& kind, const std::string& arguments,
           Making making = Making::Always);
// The object is given back, unless it is null.
Act destroy(const std::string& object);
// A word is asked for. "word" has the word, `variable` its value.
Act ask(const std::string& prompt, const std::string& variable, Form form);
Act set(const std::string& variable, const std::string& value, Form form = Form::Same);
// One of `choices` by lot.
Act draw(const std::string& variable, const std::vector<std::string>& choices);
Act choose(const std::string& variable, const std::vector<Row>& rows);
// Over and over until an act leaves.
Act loop(const Acts& acts);
// The innermost loop once more; its end; the end of the table.
Act again();
Act leave();
Act back();
Act run(TableOf table);
// Something that only the interpreter knows how to draw and to hand to the fakes; see
// Interpreter.h.
Act script(const std::string& what, const std::string& variable = "");
// For each record, debug menu item or zoom window that was drawn last.
Act eachRecord(const Acts& acts);
Act eachItem(const Acts& acts);
Act eachWindow(const Acts& acts);

// Values of rows.
inline const std::string kAboveZero = "1..2147483647";
inline const std::string kNotZero = "not 0";

} // namespace walk
