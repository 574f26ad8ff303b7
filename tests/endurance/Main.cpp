// Enters a menu of the console or loads the console many times, and prints the growth per
// repetition as one JSON object.
//
//     zarn-endurance entries PLUGIN TIMES WORDS
//     zarn-endurance loads PLUGIN TIMES WORDS
//
// Another tenth of the repetitions warms up: what is allocated once exists before the measurement.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <utility>

#include <dlfcn.h>

#include "Measures.h"
#include "RepeatedWords.h"

namespace {

using Entry = void();

[[noreturn]] void Fail(const std::string& line) {
    static_cast<void>(std::fprintf(stderr, "zarn-endurance: %s\n", line.c_str()));
    std::exit(1);
}

// The standard streams are the console's for a time.
class Streams {
public:
    Streams(std::streambuf& input, std::streambuf& output)
        : m_input(std::cin.rdbuf(&input)), m_output(std::cout.rdbuf(&output)) {}
    ~Streams() {
        std::cin.rdbuf(m_input);
        std::cout.rdbuf(m_output);
        std::cin.clear();
    }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

private:
    std::streambuf* m_input;
    std::streambuf* m_output;
};

class Console {
public:
    explicit Console(const std::string& path) : m_library(dlopen(path.c_str(), RTLD_NOW)) {
        if (m_library == nullptr)
            Fail(dlerror());
        m_entry = reinterpret_cast<Entry*>(dlsym(m_library, "zarn_startmaindebug"));
        if (m_entry == nullptr)
            Fail("no entry in " + path);
    }
    void Enter() const { m_entry(); }
    void Close() const {
        if (dlclose(m_library) != 0)
            Fail(dlerror());
    }

private:
    void* m_library;
    Entry* m_entry;
};

void Report(const Measures& before, const Measures& after, long times, std::size_t bytes) {
    const auto change = [](std::size_t from, std::size_t to) {
        return static_cast<long>(to) - static_cast<long>(from);
    };
    std::printf("{\"times\": %ld, \"heap\": %ld, \"resident\": %ld, \"descriptors\": %ld, "
                "\"threads\": %ld, \"output\": %zu}\n",
                times, change(before.heap, after.heap), change(before.resident, after.resident),
                change(before.descriptors, after.descriptors), change(before.threads, after.threads), bytes);
}

void RunEntries(const std::string& path, long times, const std::string& words) {
    const Console console(path);
    const long warmUp = times / 10 + 10;
    long entries = 0;
    Measures before;
    CountedOutput output;
    std::size_t bytes = 0;
    RepeatedWords input(words, "99", [&] {
        ReapEnded();
        if (entries == warmUp) {
            before = Measures::Take();
            bytes = output.GetCount();
        }
        return entries++ < warmUp + times;
    });
    {
        const Streams streams(input, output);
        console.Enter();
    }
    Report(before, Measures::Take(), times, output.GetCount() - bytes);
    console.Close();
}

void RunLoads(const std::string& path, long times, const std::string& words) {
    const long warmUp = times / 10 + 10;
    Measures before;
    CountedOutput output;
    for (long load = 0; load < warmUp + times; ++load) {
        if (load == warmUp)
            before = Measures::Take();
        const Console console(path);
        bool hasAsked = false;
        RepeatedWords input(words, "99", [&] { return !std::exchange(hasAsked, true); });
        {
            const Streams streams(input, output);
            console.Enter();
        }
        console.Close();
        if (void* still = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD); still != nullptr)
            Fail("the plug-in is still loaded after it was closed for time " + std::to_string(load + 1));
    }
    Report(before, Measures::Take(), times, output.GetCount());
}

} // namespace

int main(int count, char** arguments) try {
    const std::string mode = count == 5 ? arguments[1] : "";
    const long times = count == 5 ? std::strtol(arguments[3], nullptr, 10) : 0;
    if ((mode != "entries" && mode != "loads") || times <= 0)
        Fail("usage: zarn-endurance entries|loads PLUGIN TIMES WORDS");
    if (mode == "entries")
        RunEntries(arguments[2], times, arguments[4]);
    else
        RunLoads(arguments[2], times, arguments[4]);
    return 0;
} catch (const std::exception& failure) {
    Fail(failure.what());
}
