#include "Console.h"

#include <deque>
#include <iostream>
#include <mutex>
#include <sstream>
#include <streambuf>

#include <gtest/gtest.h>

namespace {

struct OutOfWords {};

// More than the prompts of any scenario.
constexpr int kMostFlushes = 20000;

// One step of the input: a word, something to be done before it, or a time without words.
struct Step {
    std::string word = {};
    std::function<void()> action = nullptr;
    std::ios_base::iostate fault = std::ios_base::goodbit;
    int prompts = 0;
    std::string prompt = {};
};

} // namespace

// The two buffers share the script: what is written decides when the input is good again.
class Console::Streams {
public:
    Streams()
        : m_oldInput(std::cin.rdbuf(&m_input)), m_oldOutput(std::cout.rdbuf(&m_output)),
          m_oldTie(std::cin.tie(nullptr)), m_oldInputExceptions(std::cin.exceptions()) {
        std::cin.clear();
        std::cout.clear();
    }
    ~Streams() {
        std::cin.exceptions(m_oldInputExceptions);
        std::cin.clear();
        std::cout.clear();
        std::cin.tie(m_oldTie);
        std::cin.rdbuf(m_oldInput);
        std::cout.rdbuf(m_oldOutput);
    }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

    std::deque<Step> steps;

private:
    class Input : public std::streambuf {
    public:
        explicit Input(Streams& streams) : m_streams(streams) {}

    protected:
        // Called when the console wants a byte and the last word is used up: it asks for a word.
        int_type underflow() override {
            Step step;
            do {
                if (m_streams.steps.empty())
                    throw OutOfWords{};
                step = m_streams.steps.front();
                m_streams.steps.pop_front();
                if (step.action)
                    step.action();
            } while (step.action);
            if (step.fault != std::ios_base::goodbit) {
                m_streams.Fail(step);
                return traits_type::eof();
            }
            Timeline::Now().Typed(step.word);
            m_text = step.word + "\n";
            setg(m_text.data(), m_text.data(), m_text.data() + m_text.size());
            return traits_type::to_int_type(*gptr());
        }

    private:
        Streams& m_streams;
        std::string m_text;
    };

    // Unbuffered: a piece is on the time line when it is inserted. Two threads may write.
    class Output : public std::streambuf {
    public:
        explicit Output(Streams& streams) : m_streams(streams) {}

    protected:
        std::streamsize xsputn(const char* bytes, std::streamsize count) override {
            m_streams.Write({bytes, static_cast<std::size_t>(count)});
            return count;
        }
        int_type overflow(int_type byte) override {
            const char character = traits_type::to_char_type(byte);
            if (!traits_type::eq_int_type(byte, traits_type::eof()))
                m_streams.Write({&character, 1});
            return traits_type::not_eof(byte);
        }
        int sync() override {
            Timeline::Now().Flush();
            m_streams.NoteFlush();
            return 0;
        }

    private:
        Streams& m_streams;
    };

    void Fail(const Step& step) {
        std::lock_guard lock(m_mutex);
        Timeline::Now().Typed(step.fault == std::ios_base::badbit ? "broken input" : "end of input");
        m_faulty = step;
        m_faultyFlushes = 0;
        m_sinceFlush.clear();
        if (step.fault == std::ios_base::badbit) {
            // The mask would turn the fault into an exception; it is only for running out of words.
            std::cin.exceptions(std::ios_base::goodbit);
            std::cin.setstate(std::ios_base::badbit);
        }
    }
    void Write(std::string_view bytes) {
        Timeline::Now().Output(bytes);
        std::lock_guard lock(m_mutex);
        m_sinceFlush += bytes;
    }
    void NoteFlush() {
        std::lock_guard lock(m_mutex);
        const bool prompted = m_sinceFlush.ends_with(m_faulty.prompt);
        m_sinceFlush.clear();
        if (m_faulty.prompts == 0)
            return;
        // A console that repeats something else would do so forever.
        if (++m_faultyFlushes > kMostFlushes) {
            ADD_FAILURE() << "without input, the console does not come back to \"" << m_faulty.prompt << "\"";
            m_faulty.prompts = 1;
        } else if (!prompted) {
            return;
        }
        if (--m_faulty.prompts == 0) {
            std::cin.clear();
            std::cin.exceptions(std::ios_base::badbit);
        }
    }

    std::mutex m_mutex;
    std::string m_sinceFlush;
    Step m_faulty;
    int m_faultyFlushes = 0;

    Input m_input{*this};
    Output m_output{*this};
    std::streambuf* m_oldInput;
    std::streambuf* m_oldOutput;
    std::ostream* m_oldTie;
    std::ios_base::iostate m_oldInputExceptions;
};

Console::Console() : m_streams(std::make_unique<Streams>()) {
    Timeline::Now().Clear();
}

Console::~Console() = default;

Console& Console::Type(const std::string& words) {
    std::istringstream in(words);
    for (std::string word; in >> word;)
        m_streams->steps.push_back({.word = word});
    return *this;
}

Console& Console::Meanwhile(std::function<void()> action) {
    m_streams->steps.push_back({.action = std::move(action)});
    return *this;
}

Console& Console::EndInput(int prompts, const std::string& prompt) {
    m_streams->steps.push_back({.fault = std::ios_base::eofbit, .prompts = prompts, .prompt = prompt});
    return *this;
}

Console& Console::BreakInput(int prompts, const std::string& prompt) {
    m_streams->steps.push_back({.fault = std::ios_base::badbit, .prompts = prompts, .prompt = prompt});
    return *this;
}

void Console::Run(const std::function<void()>& entry) {
    std::cin.exceptions(std::ios_base::badbit);
    try {
        entry();
    } catch (const OutOfWords&) {
        ADD_FAILURE() << "the console asked for one word more; so far:\n" << Whole();
    }
    std::cin.exceptions(std::ios_base::goodbit);
    std::cin.clear();
}

bool Console::WroteInOnePiece(const std::string& text) {
    for (const std::string& piece : Timeline::Now().Insertions()) {
        if (piece == text || piece + "\n" == text)
            return true;
    }
    return false;
}

std::size_t Console::CountWordsLeft() const {
    return m_streams->steps.size();
}
