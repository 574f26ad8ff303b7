// The host's two readers of text from outside: a script, and the words for the console. A script
// that was understood says the same when it is written down from its steps; the console gets every
// word, however the text is cut.

#include <chrono>
#include <istream>
#include <sstream>
#include <string>

#include "ConsoleInput.h"
#include "Input.h"
#include "Require.h"
#include "Script.h"

namespace {

std::string Write(const std::vector<host::Step>& steps) {
    std::string text;
    unsigned line = 1;
    for (const host::Step& step : steps) {
        REQUIRE(step.lineNumber >= line);
        for (; line < step.lineNumber; ++line)
            text += '\n';
        ++line;
        if (const auto* typed = std::get_if<host::TypeStep>(&step.action)) {
            text += '\\' + typed->line;
        } else {
            const auto& expected = std::get<host::ExpectStep>(step.action);
            REQUIRE(!expected.text.empty());
            REQUIRE(expected.limit.count() > 0 && expected.limit <= std::chrono::hours(1));
            text += "expect " + host::Quoted(expected.text) + " within " +
                    std::to_string(expected.limit.count() / 1000) + "." +
                    std::to_string(1000 + expected.limit.count() % 1000).substr(1);
        }
        text += '\n';
    }
    return text;
}

void ReadScript(std::string_view text) {
    host::ScriptError error{};
    const auto steps = host::ParseScript(text, error);
    if (!steps) {
        REQUIRE(error.lineNumber >= 1 && !error.reason.empty());
        return;
    }
    const std::string written = Write(*steps);
    const auto again = host::ParseScript(written, error);
    REQUIRE(again && Write(*again) == written);
}

// Gives the text in blocks of a size.
class Blocks : public host::InputSource {
public:
    Blocks(std::string_view text, std::size_t size) : m_rest(text), m_size(size) {}
    std::string_view Next() override {
        const std::string_view block = m_rest.substr(0, m_size);
        m_rest.remove_prefix(block.size());
        return block;
    }

private:
    std::string_view m_rest;
    std::size_t m_size;
};

void ReadWords(std::string_view text, std::size_t blockSize, bool typed) {
    Blocks blocks(text, blockSize);
    std::string echoed;
    int ends = 0;
    host::InputBuffer::Hooks hooks;
    hooks.beforeWait = [] {};
    hooks.atEnd = [&ends] { ++ends; };
    if (typed)
        hooks.typed = [&echoed](std::string_view word) { echoed += word; };
    host::InputBuffer buffer(blocks, hooks);
    std::istream console(&buffer);
    std::istringstream plain{std::string(text)};
    std::string expected;
    for (std::string word; plain >> word; expected += word + '\n') {
        std::string read;
        REQUIRE(console >> read && read == word);
    }
    std::string none;
    REQUIRE(!(console >> none) && ends == 1);
    if (typed)
        REQUIRE(echoed == expected);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::uint8_t way = input.Byte();
    const std::string_view text = input.Text(size);
    ReadScript(text);
    ReadWords(text, std::size_t{way} / 2 + 1, (way & 1) != 0);
    return 0;
}
