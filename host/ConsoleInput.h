#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>

namespace host {

// Where the console's input comes from. Used only on the thread that runs the plug-in.
class InputSource {
public:
    virtual ~InputSource() = default;

    // The next bytes as they arrive; blocks until there are some. Empty at the end. The bytes stay
    // valid until the next call.
    virtual std::string_view Next() = 0;

    // After the end: 0, or the errno of the read that failed.
    virtual int Error() const { return 0; }
};

// A text that is known from the start.
class TextInput : public InputSource {
public:
    explicit TextInput(std::string text) : m_text(std::move(text)) {}

    std::string_view Next() override {
        return std::exchange(m_used, true) ? std::string_view() : std::string_view(m_text);
    }

private:
    std::string m_text;
    bool m_used = false;
};

// Reads a descriptor, which is not owned. A read returns what is there and does not wait for a full
// block: a user's line is available at once, and a hundred thousand words of a pipe need few reads.
// A failed read is the end.
class DescriptorInput : public InputSource {
public:
    explicit DescriptorInput(int descriptor) : m_descriptor(descriptor) {}

    std::string_view Next() override;
    int Error() const override { return m_error; }

private:
    static constexpr std::size_t kBlock = std::size_t{64} * 1024; // the capacity of a pipe

    int m_descriptor;
    int m_error = 0;
    std::array<char, kBlock> m_block;
};

// The buffer behind std::cin: passes the source's bytes to the plug-in. Used only on the thread
// that runs the plug-in.
//
// Consoles repeat their menu for ever at end of input, and some take a failed read for an answer.
// So the plug-in never sees the end. After the last byte comes a line end, so that the last word
// takes effect; the next read calls `atEnd`, which should not return. (If it does, the stream ends
// normally.)
class InputBuffer : public std::streambuf {
public:
    struct Hooks {
        std::function<void()> beforeWait; // called before the source is read, which may block
        std::function<void()> atEnd;      // called when the plug-in reads and no input is left
        // Called with each word when the console reads it, and with a line end after it. When
        // empty, whole blocks are passed on, which is faster.
        std::function<void(std::string_view)> typed;
    };

    // `source` is not owned.
    InputBuffer(InputSource& source, Hooks hooks);

protected:
    int_type underflow() override;

private:
    bool Fill();
    std::string_view TakePiece();

    InputSource& m_source;
    Hooks m_hooks;
    std::string_view m_rest;   // of the source's block, not passed on yet
    bool m_atLineStart = true; // the last byte passed on was a line end, or there was none
    bool m_inWord = false;     // the last piece passed on ended inside a word
    bool m_ended = false;      // the source has ended and is not read again
};

} // namespace host
