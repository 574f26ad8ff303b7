// Growth of the host with entries of the test console: memory, descriptors and threads.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "ConsoleProcess.h"
#include "Figure.h"
#include "SimulatedTv.h"

namespace {

constexpr std::size_t kWarmUp = 1000;
constexpr std::size_t kEntries = 10000;
constexpr std::size_t kBatch = 500;

struct Use {
    double bytes = 0; // in memory
    double descriptors = 0;
    double threads = 0;
};

double EntriesOf(const std::string& directory) {
    return static_cast<double>(std::distance(std::filesystem::directory_iterator(directory), {}));
}

Use UseOf(pid_t process) {
    const std::string directory = "/proc/" + std::to_string(process);
    Use use;
    std::ifstream status(directory + "/status");
    for (std::string word; status >> word;) {
        if (word == "RssAnon:") {
            status >> use.bytes;
            use.bytes *= 1024;
        }
    }
    use.descriptors = EntriesOf(directory + "/fd");
    use.threads = EntriesOf(directory + "/task");
    return use;
}

void EnterAndLeave(bench::ConsoleProcess& console, std::size_t times) {
    std::string words;
    for (std::size_t i = 0; i < kBatch; ++i)
        words += "5 99 ";
    words += "8\n";
    for (std::size_t done = 0; done < times; done += kBatch) {
        console.Type(words);
        console.Await("Command not implemented");
    }
    // The process menu after that answer: nothing is left to do.
    console.Await("\n\ncmd> ");
}

} // namespace

int main() {
    const bench::SimulatedTv tv;
    bench::ConsoleProcess console({HOST, PLUGIN});
    EnterAndLeave(console, kWarmUp);
    const Use before = UseOf(console.GetProcess());
    EnterAndLeave(console, kEntries);
    const Use after = UseOf(console.GetProcess());

    const auto growth = [](const char* name, const char* unit, double value, double limit) {
        bench::Figure figure;
        figure.name = name;
        figure.value = value;
        figure.unit = unit;
        figure.limit = limit;
        return figure;
    };
    // Each entry keeps one main loop: 32 bytes, and what the allocator adds.
    bench::Figure memory =
        growth("entry_memory", "bytes/entry", (after.bytes - before.bytes) / static_cast<double>(kEntries), 1.5);
    memory.peers = {{"main loop kept on purpose", 48}};
    memory.ratio = memory.value / 48;
    bench::Figure descriptors = growth("entry_descriptors", "descriptors", after.descriptors - before.descriptors, 0);
    descriptors.ratio = descriptors.value;
    bench::Figure threads = growth("entry_threads", "threads", after.threads - before.threads, 0);
    threads.ratio = threads.value;
    return bench::PrintFigures({memory, descriptors, threads}) ? 0 : 1;
}
