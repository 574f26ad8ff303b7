#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Timeline.h"

// A scenario at the console: words typed in, a time line out.
//
//     Console console;
//     console.Type("1 help 99").Run(zarn_startmaindebug);
//     EXPECT_EQ(console.Transcript(), "DebugUtil\n" ...);
//
// While it lives, std::cin and std::cout are its own. The two are not tied, so that the flushes on
// the time line are those that the console asks for itself. A word is recorded on the time line
// when the console asks for it.
//
// A scenario must leave the console ("99"): if the words run out first, an exception ends the run
// and the test fails (if another thread of the console is still running, the process ends).
class Console {
public:
    // Starts with an empty time line.
    Console();
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Words separated by blanks, typed one after the other.
    Console& Type(const std::string& words);
    // When the words so far are used up and the console waits for the next one, `action` is done
    // first, on the console's thread.
    Console& Meanwhile(std::function<void()> action);
    // After the words so far, the input is at its end: reads fail until `prompt` has been flushed
    // out `prompts` times more. Then the stream is made good again and takes the words that follow.
    Console& EndInput(int prompts, const std::string& prompt = "cmd> ");
    // As EndInput, but the stream's fault is its bad bit.
    Console& BreakInput(int prompts, const std::string& prompt = "cmd> ");
    // Runs the console on the calling thread.
    void Run(const std::function<void()>& entry);

    // The time line, in the forms of Timeline.h.
    static std::string Transcript() { return Timeline::Now().Transcript(); }
    static std::vector<std::string> Calls() { return Timeline::Now().Calls(); }
    static std::string Whole() { return Timeline::Now().Whole(); }
    static std::string Dialogue() { return Timeline::Now().Dialogue(); }
    // Whether one insertion wrote exactly `text`; a line end that follows it may be another's.
    static bool WroteInOnePiece(const std::string& text);

    // Words that have not been read.
    std::size_t CountWordsLeft() const;

private:
    class Streams;
    std::unique_ptr<Streams> m_streams;
};
