#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// One visit to the console as it is predicted: the words, what is to be seen before each, and what
// the faked platform shall answer to the calls that follow each.
namespace walk {

// A word with the number by which everything that happens after it is drawn. Words that are left
// out of a session do not change what the others lead to.
struct Word {
    long number = 0;
    std::string text;
};

struct Record {
    bool hasTable = true;
    std::map<int, std::optional<std::int64_t>> fields = {};
};

struct Item {
    std::string name;
    bool state = false;
    unsigned int id = 0;
};

struct Signal {
    int type = 0;
    int profile = 0;
    unsigned short screen = 0;
    std::uint64_t data = 0;
    // The line that it makes the console write; empty where it makes it write nothing.
    std::string line;
};

struct Answer {
    enum class Kind {
        Result,      // operation, number
        Value,       // operation, number
        Creation,    // operation, number; flag: with an object
        Found,       // records[0]
        Services,    // records
        TvMode,      // number, second
        Program,     // flag: with a title; number: its length
        ZoomWindows, // ids
        Vconf,       // operation is the key, number
        Reply,       // operation is the method; see the members
        Open,        // flag
        Within,      // a signal within the next call of an operation
    };
    Kind kind;
    std::string operation;
    std::int64_t number = 0;
    std::int64_t second = 0;
    bool flag = true;
    std::vector<Record> records = {};
    std::vector<int> ids = {};
    Signal signal = {};
    // Of a reply: whether the exchange works (flag), and what the reply holds.
    std::optional<std::int64_t> status = {};
    std::optional<bool> answer = {};
    std::optional<std::string> screen = {};
    std::optional<std::vector<Item>> items = {};
};

// From one word that is asked for to the next one.
struct Step {
    // What is on the time line since the word before, that word included.
    std::string expected;
    // Everything written has been flushed when the word is asked for.
    bool flushed = true;
    // Lines that may stand anywhere in it, whole.
    std::vector<std::string> loose;
    // Where the word is asked for.
    std::string place;

    // Signals that come in, and are through, before the word is typed.
    std::vector<Signal> before;
    Word word;
    // Signals that come in while the console goes on.
    std::vector<Signal> meanwhile;
    std::vector<Answer> answers;
};

struct Session {
    std::uint64_t seed = 0;
    // What the machine is like for the length of the session.
    bool markerThere = false;
    bool readOnly = false;
    bool signedDigits = false;
    std::string viewers;
    std::vector<Step> steps;
    // After the last word.
    Step end;
    // Sessions of the middleware that the console keeps, in the order in which they were made.
    std::vector<std::string> kept;
};

} // namespace walk
