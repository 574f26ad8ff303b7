#pragma once

#include "WordSource.h"

#include <string>
#include <string_view>
#include <utility>

namespace host {

// Words given beforehand, as one text.
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
