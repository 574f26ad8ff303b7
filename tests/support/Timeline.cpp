#include "Timeline.h"

Timeline& Timeline::now() {
    static Timeline* timeline = new Timeline;
    return *timeline;
}

void Timeline::add(Kind kind, std::string_view text) {
    std::lock_guard lock(m_mutex);
    m_events.push_back({kind, std::string(text)});
}

void Timeline::output(std::string_view bytes) {
    add(Kind::Output, bytes);
}

void Timeline::flush() {
    add(Kind::Flush, "flush");
}

void Timeline::typed(std::string_view word) {
    add(Kind::Typed, word);
}

void Timeline::call(std::string_view what) {
    add(Kind::Call, what);
}

void Timeline::clear() {
    std::lock_guard lock(m_mutex);
    m_events.clear();
}

std::string Timeline::transcript() const {
    std::lock_guard lock(m_mutex);
    std::string text;
    for (const Event& event : m_events) {
        if (event.kind == Kind::Output)
            text += event.text;
    }
    return text;
}

std::vector<std::string> Timeline::calls() const {
    std::lock_guard lock(m_mutex);
    std::vector<std::string> calls;
    for (const Event& event : m_events) {
        if (event.kind == Kind::Call)
            calls.push_back(event.text);
    }
    return calls;
}

std::vector<std::string> Timeline::insertions() const {
    std::lock_guard lock(m_mutex);
    std::vector<std::string> pieces;
    for (const Event& event : m_events) {
        if (event.kind == Kind::Output)
            pieces.push_back(event.text);
    }
    return pieces;
}

std::string Timeline::whole() const {
    return asText(true);
}

std::string Timeline::dialogue() const {
    return asText(false);
}

std::string Timeline::asText(bool flushes) const {
    std::lock_guard lock(m_mutex);
    std::string text;
    for (const Event& event : m_events) {
        switch (event.kind) {
        case Kind::Output:
            text += event.text;
            break;
        case Kind::Flush:
            text += flushes ? "{flush}" : "";
            break;
        case Kind::Typed:
            text += "{typed " + event.text + "}";
            break;
        case Kind::Call:
            text += "{" + event.text + "}";
            break;
        }
    }
    return text;
}
