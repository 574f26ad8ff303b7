#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace host {

// Where the typed text comes from. Used by the thread that runs the plug-in only.
class IWordSource {
public:
    virtual ~IWordSource() = default;

    // The next bytes as they come, blocking until there are some; empty when there will be none any
    // more. The bytes stay in place until the next call.
    virtual std::string_view Next() = 0;
};

// A text given beforehand.
class TCGivenWords : public IWordSource {
public:
    explicit TCGivenWords(std::string words) : m_Words(std::move(words)) {}

    std::string_view Next() override {
        return std::exchange(m_Used, true) ? std::string_view() : std::string_view(m_Words);
    }

private:
    std::string m_Words;
    bool m_Used = false;
};

} // namespace host
