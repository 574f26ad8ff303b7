#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

// What happened, in order: bytes written to the console, flushes, words read, calls into the
// platform. There is one time line, so that the order of calls and output can be checked. Any
// thread.
class __attribute__((visibility("default"))) Timeline {
public:
    // The process's time line. Exists as soon as it is asked for, before main as well, and is never
    // destroyed: what a library does while it is unloaded is recorded too.
    static Timeline& Now();

    void Output(std::string_view bytes) { Add(Kind::Output, bytes); }
    void Flush() { Add(Kind::Flush, "flush"); }
    void Typed(std::string_view word) { Add(Kind::Typed, word); }
    // `what` as the test wants to read it, e.g. "IAVControl::MuteVideo(5)".
    void Call(std::string_view what) { Add(Kind::Call, what); }
    void Clear();

    // Only the bytes on the console.
    std::string Transcript() const;
    // Only the calls.
    std::vector<std::string> Calls() const { return Select(Kind::Call); }
    // The pieces of output as they were inserted, one per insertion.
    std::vector<std::string> Insertions() const { return Select(Kind::Output); }
    // Everything in order, as one text: output as it stands, words as "<99>", flushes and calls as
    // "{flush}" and "{IAVControl::MuteVideo(5)}".
    std::string Whole() const { return ToText(true); }
    // The same without the flushes.
    std::string Dialogue() const { return ToText(false); }

private:
    enum class Kind { Output, Flush, Typed, Call };
    struct Event {
        Kind kind;
        std::string text;
    };

    Timeline() = default;
    void Add(Kind kind, std::string_view text);
    std::vector<std::string> Select(Kind kind) const;
    std::string ToText(bool withFlushes) const;

    mutable std::mutex m_mutex;
    std::vector<Event> m_events;
};
