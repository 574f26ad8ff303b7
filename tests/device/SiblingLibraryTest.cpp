// The sibling library's menu, through the function that the console calls.

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include <dlfcn.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

// Replaces the standard streams for its lifetime.
class Streams {
public:
    explicit Streams(const std::string& words) : m_words(words) {
        m_in = std::cin.rdbuf(m_words.rdbuf());
        m_out = std::cout.rdbuf(m_printed.rdbuf());
    }
    ~Streams() {
        std::cin.rdbuf(m_in);
        std::cin.clear();
        std::cout.rdbuf(m_out);
    }
    std::string Printed() const { return m_printed.str(); }

private:
    std::istringstream m_words;
    std::ostringstream m_printed;
    std::streambuf* m_in;
    std::streambuf* m_out;
};

const std::string kScreen = "====================================\n"
                            "\t[LUMO Debug]\t\n"
                            "------------------------------------\n"
                            " 1. Show process\n"
                            " 2. Show TV service\n"
                            "------------------------------------\n"
                            " 99 : Exit\n"
                            "====================================\n"
                            "lumo> ";

// What the menu prints for these words.
std::string PrintedFor(const std::string& words) {
    void* library = dlopen(SIBLING_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        return dlerror();
    const auto enter = reinterpret_cast<void (*)()>(dlsym(library, "lumo_subdebugmenu"));
    std::string printed = "no entry";
    if (enter != nullptr) {
        const Streams streams(words);
        enter();
        printed = streams.Printed();
    }
    dlclose(library);
    return printed;
}

} // namespace

TEST(SiblingLibrary, IsLeftBy99AndByTheEndOfInput) {
    EXPECT_EQ(PrintedFor("99 1"), kScreen);
    EXPECT_EQ(PrintedFor(""), kScreen);
}

TEST(SiblingLibrary, ShowsTheProcessThatItRunsIn) {
    EXPECT_EQ(PrintedFor("1 99"), kScreen + "process " + std::to_string(getpid()) + ", parent " +
                                      std::to_string(getppid()) + "\n" + kScreen);
}

TEST(SiblingLibrary, ShowsWhichTvServiceIsMeant) {
    setenv("NORVEX_SOCKET", "/run/tv.sock", 1);
    EXPECT_EQ(PrintedFor("2 99"), kScreen + "NORVEX_SOCKET /run/tv.sock\n" + kScreen);
    unsetenv("NORVEX_SOCKET");
    EXPECT_EQ(PrintedFor("2 99"), kScreen + "NORVEX_SOCKET (not set)\n" + kScreen);
}

TEST(SiblingLibrary, OtherWordsAreNotImplemented) {
    EXPECT_EQ(PrintedFor("3 01 99"),
              kScreen + "Command not implemented\n" + kScreen + "Command not implemented\n" + kScreen);
}
