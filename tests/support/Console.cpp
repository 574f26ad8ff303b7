#include "Console.h"

#include <deque>
#include <iostream>
#include <mutex>
#include <sstream>
#include <streambuf>

#include <gtest/gtest.h>

#include "Timeline.h"

namespace {

struct OutOfWords {};

// More often than any scenario waits for a prompt.
constexpr int kMostFlushes = 20000;

// One step of the input: a word, something to be done before it, or a time without words.
struct Step {
    std::string word;
    int prompts = 0;
    std::string prompt;
    std::ios_base::iostate fault = std::ios_base::goodbit;
    std::function<void()> action = nullptr;
};

} // namespace

// The two buffers share the script: what is written decides when the input is good again.
class Console::Streams {
public:
    Streams()
        : m_input(*this), m_output(*this), m_oldInput(std::cin.rdbuf(&m_input)),
          m_oldOutput(std::cout.rdbuf(&m_output)), m_oldTie(std::cin.tie(nullptr)),
          m_oldInputExceptions(std::cin.exceptions()) {
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
                m_streams.fail(step);
                return traits_type::eof();
            }
            Timeline::now().typed(step.word);
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
            write({bytes, static_cast<std::size_t>(count)});
            return count;
        }
        int_type overflow(int_type byte) override {
            if (!traits_type::eq_int_type(byte, traits_type::eof())) {
                const char c = traits_type::to_char_type(byte);
                write({&c, 1});
            }
            return traits_type::not_eof(byte);
        }
        int sync() override {
            Timeline::now().flush();
            m_streams.flushed();
            return 0;
        }

    private:
        void write(std::string_view bytes) {
            Timeline::now().output(bytes);
            m_streams.written(bytes);
        }
        Streams& m_streams;
    };

    void fail(const Step& step) {
        std::lock_guard lock(m_mutex);
        Timeline::now().typed(step.fault == std::ios_base::badbit ? "<broken>" : "<end>");
        m_faulty = step;
        m_faultyFlushes = 0;
        m_sinceFlush.clear();
        if (step.fault == std::ios_base::badbit) {
            // The mask would turn the fault into an exception; it is only for running out of words.
            std::cin.exceptions(std::ios_base::goodbit);
            std::cin.setstate(std::ios_base::badbit);
        }
    }
    void written(std::string_view bytes) {
        std::lock_guard lock(m_mutex);
        m_sinceFlush += bytes;
    }
    void flushed() {
        std::lock_guard lock(m_mutex);
        const bool prompted = m_sinceFlush.ends_with(m_faulty.prompt);
        m_sinceFlush.clear();
        if (m_faulty.prompts == 0)
            return;
        // A console that repeats something else would do so for ever.
        if (++m_faultyFlushes > kMostFlushes) {
            ADD_FAILURE() << "without input, the console does not come back to \""
                          << m_faulty.prompt << "\"";
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

    Input m_input;
    Output m_output;
    std::streambuf* m_oldInput;
    std::streambuf* m_oldOutput;
    std::ostream* m_oldTie;
    std::ios_base::iostate m_oldInputExceptions;
};

Console::Console() : m_streams(std::make_unique<Streams>()) {
    Timeline::now().clear();
}

Console::~Console() = default;

Console& Console::type(const std::string& words) {
    std::istringstream in(words);
    for (std::string word; in >> word;)
        m_streams->steps.push_back({word, 0, "", std::ios_base::goodbit, nullptr});
    return *this;
}

Console& Console::meanwhile(std::function<void()> action) {
    Step step;
    step.action = std::move(action);
    m_streams->steps.push_back(std::move(step));
    return *this;
}

Console& Console::endInput(int prompts, const std::string& prompt) {
    m_streams->steps.push_back({"", prompts, prompt, std::ios_base::eofbit, nullptr});
    return *this;
}

Console& Console::breakInput(int prompts, const std::string& prompt) {
    m_streams->steps.push_back({"", prompts, prompt, std::ios_base::badbit, nullptr});
    return *this;
}

void Console::run(const std::function<void()>& entry) {
    std::cin.exceptions(std::ios_base::badbit);
    try {
        entry();
    } catch (const OutOfWords&) {
        ADD_FAILURE() << "the console asked for one word more; so far:\n" << whole();
    }
    std::cin.exceptions(std::ios_base::goodbit);
    std::cin.clear();
}

std::string Console::transcript() const {
    return Timeline::now().transcript();
}

std::vector<std::string> Console::calls() const {
    return Timeline::now().calls();
}

std::vector<std::string> Console::insertions() const {
    return Timeline::now().insertions();
}

std::string Console::whole() const {
    return Timeline::now().whole();
}

std::string Console::dialogue() const {
    return Timeline::now().dialogue();
}

std::size_t Console::wordsLeft() const {
    return m_streams->steps.size();
}
