#include "Timeline.h"

Timeline& Timeline::Now() {
    static Timeline* timeline = new Timeline;
    return *timeline;
}

void Timeline::Add(Kind kind, std::string_view text) {
    std::lock_guard lock(m_mutex);
    m_events.push_back({kind, std::string(text)});
}

void Timeline::Clear() {
    std::lock_guard lock(m_mutex);
    m_events.clear();
}

std::vector<std::string> Timeline::Select(Kind kind) const {
    std::lock_guard lock(m_mutex);
    std::vector<std::string> texts;
    for (const Event& event : m_events) {
        if (event.kind == kind)
            texts.push_back(event.text);
    }
    return texts;
}

std::string Timeline::Transcript() const {
    std::string text;
    for (const std::string& piece : Insertions())
        text += piece;
    return text;
}

std::string Timeline::ToText(bool withFlushes) const {
    std::lock_guard lock(m_mutex);
    std::string text;
    for (const Event& event : m_events) {
        if (event.kind == Kind::Output)
            text += event.text;
        else if (event.kind == Kind::Typed)
            text += "<" + event.text + ">";
        else if (event.kind == Kind::Call || withFlushes)
            text += "{" + event.text + "}";
    }
    return text;
}
