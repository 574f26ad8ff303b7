// What entering and leaving the test console again and again leaves behind in the host: memory,
// descriptors and threads.

#include "ConsoleProcess.h"
#include "Figure.h"
#include "SimulatedTv.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

constexpr std::size_t kWarmUp = 1000;
constexpr std::size_t kEntries = 10000;
constexpr std::size_t kBatch = 500;

struct TSUse {
    double m_Bytes = 0; // in memory
    double m_Descriptors = 0;
    double m_Threads = 0;
};

double EntriesOf(const std::string& directory) {
    return static_cast<double>(std::distance(std::filesystem::directory_iterator(directory), {}));
}

TSUse UseOf(pid_t process) {
    const std::string directory = "/proc/" + std::to_string(process);
    TSUse use;
    std::ifstream status(directory + "/status");
    for (std::string word; status >> word;) {
        if (word == "RssAnon:") {
            status >> use.m_Bytes;
            use.m_Bytes *= 1024;
        }
    }
    use.m_Descriptors = EntriesOf(directory + "/fd");
    use.m_Threads = EntriesOf(directory + "/task");
    return use;
}

void EnterAndLeave(bench::TCConsoleProcess& console, std::size_t times) {
    std::string words;
    for (std::size_t i = 0; i < kBatch; ++i)
        words += "5 99 ";
    words += "8\n";
    for (std::size_t done = 0; done < times; done += kBatch) {
        console.Type(words);
        console.Await("Command not implemented");
    }
    // The process menu behind that answer: nothing is under way.
    console.Await("\n\ncmd> ");
}

} // namespace

int main() {
    const bench::TCSimulatedTv tv;
    bench::TCConsoleProcess console({HOST, PLUGIN});
    EnterAndLeave(console, kWarmUp);
    const TSUse before = UseOf(console.Process());
    EnterAndLeave(console, kEntries);
    const TSUse after = UseOf(console.Process());

    const auto growth = [](const char* name, const char* unit, double value, double limit) {
        bench::TSFigure figure;
        figure.m_Name = name;
        figure.m_Value = value;
        figure.m_Unit = unit;
        figure.m_Limit = limit;
        return figure;
    };
    // One main loop is kept each time: 32 bytes, and what the allocator adds to them.
    bench::TSFigure memory =
        growth("entry_memory", "bytes/entry",
               (after.m_Bytes - before.m_Bytes) / static_cast<double>(kEntries), 1.5);
    memory.m_Peers = {{"main loop kept on purpose", 48}};
    memory.m_Ratio = memory.m_Value / 48;
    bench::TSFigure descriptors =
        growth("entry_descriptors", "descriptors", after.m_Descriptors - before.m_Descriptors, 0);
    descriptors.m_Ratio = descriptors.m_Value;
    bench::TSFigure threads =
        growth("entry_threads", "threads", after.m_Threads - before.m_Threads, 0);
    threads.m_Ratio = threads.m_Value;
    return bench::PrintFigures({memory, descriptors, threads}) ? 0 : 1;
}
