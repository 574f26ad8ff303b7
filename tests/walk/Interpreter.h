#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Coverage.h"
#include "Lots.h"
#include "Session.h"
#include "Table.h"
#include "Words.h"

namespace walk {

// Does the acts of tables, one session long.
class Interpreter {
public:
    // `signals` is the table of the lines that signals make the console write.
    Interpreter(std::uint64_t seed, const Table& signals, Words& words, Coverage& coverage);
    Session run(const Table& entry);

private:
    enum class Flow { Next, Again, Leave, Return };

    Flow runActs(const Acts& acts);
    Flow runAct(const Acts& acts, std::size_t at);
    Flow chosen(const Act& act);
    Flow looped(const Acts& acts);
    void asked(const Acts& acts, std::size_t at);
    void typed(const Word& word);
    void called(const Act& act);
    void gives(const Act& act);
    void created(const Act& act);
    void destroyed(const Act& act);

    // What only the interpreter knows, by the name that the tables have for it.
    void scripted(const Act& act);
    Record drawnRecord();
    void drawServices();
    void drawProgram();
    void lookField(const std::string& tag);
    void drawItems();
    void pickItem();
    void drawWindows();
    void reply(const std::string& method);
    Signal drawnSignal();

    void note(const std::string& call);
    void answer(const Answer& answer);
    std::string expanded(const std::string& text) const;
    const std::string& get(const std::string& name) const;
    bool is(const std::string& name, const std::string& value) const;

    const Table& m_signals;
    Lots m_lots;
    Words& m_words;
    Coverage& m_coverage;
    Session m_session;
    // What is gathered since the last word.
    Step m_now;
    std::string m_table;
    std::map<std::string, std::string> m_variables;
    // Objects alive, in the order in which they were made, and how many of a kind there were.
    std::vector<std::string> m_objects;
    std::map<std::string, int> m_made;
    // Operations that give nothing more until the next word.
    std::set<std::string> m_silent;
    std::vector<Record> m_records;
    std::size_t m_record = 0;
    std::vector<Item> m_items;
    std::vector<int> m_windows;
    bool m_wasOpen = false;
    // The signals' table writes its line here.
    std::string* m_pLine = nullptr;
};

} // namespace walk
