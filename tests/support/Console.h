#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

// A scenario at the console: words typed in, a time line out.
//
//     Console console;
//     console.type("1 help 99").run(zarn_startmaindebug);
//     EXPECT_EQ(console.transcript(), "DebugUtil\n" ...);
//
// While it lives, std::cin and std::cout are its own. The two are not tied, so that the flushes on
// the time line are those that the console asks for itself. A word is on the time line at the
// moment at which the console asks for it.
//
// A scenario must lead the console out by itself ("99"): when the words run out first, the run is
// given up by an exception and the test fails (where a thread of the console still runs, the
// process ends).
class Console {
public:
    // Begins with an empty time line.
    Console();
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Words separated by blanks, typed one after the other.
    Console& type(const std::string& words);
    // When the words so far are used up and the console waits for the next one, `action` is done
    // first, on the console's thread.
    Console& meanwhile(std::function<void()> action);
    // After the words so far, the input is at its end: reads fail until `prompt` has been flushed
    // out `prompts` times more. Then the stream is made good again and takes the words that follow.
    Console& endInput(int prompts, const std::string& prompt = "cmd> ");
    // As endInput, but the stream's fault is its bad bit.
    Console& breakInput(int prompts, const std::string& prompt = "cmd> ");
    // Runs the console on the calling thread.
    void run(const std::function<void()>& entry);

    // The time line, in the forms of Timeline.h.
    std::string transcript() const;
    std::vector<std::string> calls() const;
    std::vector<std::string> insertions() const;
    std::string whole() const;
    std::string dialogue() const;

    // Words not asked for so far.
    std::size_t wordsLeft() const;

private:
    class Streams;
    std::unique_ptr<Streams> m_streams;
};
