#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

// What happened, in order: bytes written to the console, flushes, words read, calls into the
// platform. There is one time line, so that the order between calls and output can be compared.
// Any thread.
class __attribute__((visibility("default"))) Timeline {
public:
    // The process's time line. Exists as soon as it is asked for, before main as well, and is never
    // destroyed: what a library does while it is unloaded is recorded too.
    static Timeline& now();

    void output(std::string_view bytes);
    void flush();
    void typed(std::string_view word);
    // `what` as the test wants to read it, e.g. "IAVControl::MuteVideo(5)".
    void call(std::string_view what);
    void clear();

    // The bytes on the console and nothing else.
    std::string transcript() const;
    // The calls alone.
    std::vector<std::string> calls() const;
    // The pieces of output as they were inserted, one an insertion.
    std::vector<std::string> insertions() const;
    // Everything in order, as one text: output as it stands, the rest in braces: "{flush}",
    // "{typed 99}", "{IAVControl::MuteVideo(5)}".
    std::string whole() const;
    // The same without the flushes.
    std::string dialogue() const;

private:
    enum class Kind { Output, Flush, Typed, Call };
    struct Event {
        Kind kind;
        std::string text;
    };

    Timeline() = default;
    void add(Kind kind, std::string_view text);
    std::string asText(bool flushes) const;

    mutable std::mutex m_mutex;
    std::vector<Event> m_events;
};
