// The sibling library of the debug console: a minimal debug menu that the console opens by path.

#include <cstdlib>
#include <iostream>
#include <string>

#include <unistd.h>

namespace {

constexpr char kMenu[] = "====================================\n"
                         "\t[LUMO Debug]\t\n"
                         "------------------------------------\n"
                         " 1. Show process\n"
                         " 2. Show TV service\n"
                         "------------------------------------\n"
                         " 99 : Exit\n"
                         "====================================\n";

const char* TextOf(const char* variable) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody here changes the environment.
    const char* value = std::getenv(variable);
    return value != nullptr ? value : "(not set)";
}

} // namespace

// The function that the console calls. Returns when the user leaves with "99" or at end of input.
// NOLINTNEXTLINE(readability-identifier-naming): the device's name.
extern "C" __attribute__((visibility("default"))) void lumo_subdebugmenu() {
    std::string word;
    while (true) {
        std::cout << kMenu << "lumo> " << std::flush;
        if (!(std::cin >> word) || word == "99")
            return;
        if (word == "1")
            std::cout << "process " << getpid() << ", parent " << getppid() << std::endl;
        else if (word == "2")
            std::cout << "NORVEX_SOCKET " << TextOf("NORVEX_SOCKET") << std::endl;
        else
            std::cout << "Command not implemented" << std::endl;
    }
}
