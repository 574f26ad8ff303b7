// A program with one data race on purpose: what the signal callback writes, on the thread of the
// main loop, and what the menu writes go through a buffer that counts without a lock. Only built
// for the thread sanitizer, which must report it: as long as it does, its silence about the other
// tests is meaningful.

#include <atomic>
#include <iostream>
#include <streambuf>
#include <string>
#include <thread>

#include <glib.h>

#include "FakeNorvexAPI.h"
#include "TPMSDebugMenu.h"

namespace {

int counter = 0;

__attribute__((noinline)) void CountWithoutALock() {
    ++counter;
}

class CountingOutput : public std::streambuf {
protected:
    std::streamsize xsputn(const char*, std::streamsize count) override {
        CountWithoutALock();
        return count;
    }
    int_type overflow(int_type byte) override {
        CountWithoutALock();
        return traits_type::not_eof(byte);
    }
};

// Relaxed, so that it orders nothing: the menu goes on after the callback without the sanitizer
// seeing that it waited.
std::atomic<bool> calledBack{false};

gboolean CallBack(gpointer) {
    FakeNorvexAPI::Current().GetLastCallback()(SIGNAL_TUNE_AROUND_FINISHED, PROFILE_MAIN, 0, {0}, nullptr);
    calledBack.store(true, std::memory_order_relaxed);
    return G_SOURCE_REMOVE;
}

// "9" shows the menu again after a signal has come; "99" leaves.
class Input : public std::streambuf {
protected:
    int_type underflow() override {
        if (m_word.empty()) {
            g_idle_add(CallBack, nullptr);
            while (!calledBack.load(std::memory_order_relaxed))
                std::this_thread::yield();
        }
        m_word = m_word.empty() ? "9\n" : "99\n";
        setg(m_word.data(), m_word.data(), m_word.data() + m_word.size());
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string m_word;
};

} // namespace

int main() {
    FakeNorvexAPI tv;
    Input input;
    CountingOutput output;
    std::streambuf* oldInput = std::cin.rdbuf(&input);
    std::streambuf* oldOutput = std::cout.rdbuf(&output);
    TCDebugMenuTPMS().Enter();
    std::cin.rdbuf(oldInput);
    std::cout.rdbuf(oldOutput);
    return 0;
}
