#include "Measures.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include <malloc.h>
#include <sys/wait.h>

// There in a build with the address sanitizer, whose heap the C library does not know.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the sanitizer's name
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace {

std::size_t CountIn(const char* directory) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(directory), {}));
}

std::size_t GetHeap() {
    if (__sanitizer_get_current_allocated_bytes != nullptr)
        return __sanitizer_get_current_allocated_bytes();
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::size_t GetResident() {
    std::ifstream status("/proc/self/status");
    std::size_t kibibytes = 0;
    for (std::string field; status >> field;) {
        if (field == "RssAnon:")
            status >> kibibytes;
    }
    return kibibytes * 1024;
}

std::size_t CountThreads() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    std::size_t count = CountIn("/proc/self/task");
    while (count > 1 && std::chrono::steady_clock::now() < end) {
        std::this_thread::yield();
        count = CountIn("/proc/self/task");
    }
    return count;
}

} // namespace

void ReapEnded() {
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}

Measures Measures::Take() {
    while (waitpid(-1, nullptr, 0) > 0) {
    }
    Measures taken;
    taken.threads = CountThreads();
    taken.heap = GetHeap();
    taken.resident = GetResident();
    // The directory that is being read is one of them.
    taken.descriptors = CountIn("/proc/self/fd") - 1;
    return taken;
}
