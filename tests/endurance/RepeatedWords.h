#pragma once

#include <functional>
#include <streambuf>
#include <string>

// Input that repeats the same words. `before` is called when the console asks for the first of
// them: it has done what it was told and waits. When it answers false the words are over, and
// `last` follows.
class RepeatedWords : public std::streambuf {
public:
    RepeatedWords(const std::string& words, const std::string& last, std::function<bool()> before)
        : m_words(words + "\n"), m_last(last + "\n"), m_before(std::move(before)) {}

protected:
    int_type underflow() override {
        if (m_isOver)
            return traits_type::eof();
        m_isOver = !m_before();
        std::string& text = m_isOver ? m_last : m_words;
        setg(text.data(), text.data(), text.data() + text.size());
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string m_words;
    std::string m_last;
    std::function<bool()> m_before;
    bool m_isOver = false;
};

// Output that is discarded and counted.
class CountedOutput : public std::streambuf {
public:
    std::size_t GetCount() const { return m_count; }

protected:
    std::streamsize xsputn(const char*, std::streamsize count) override {
        m_count += static_cast<std::size_t>(count);
        return count;
    }
    int_type overflow(int_type character) override {
        ++m_count;
        return traits_type::not_eof(character);
    }

private:
    std::size_t m_count = 0;
};
