// A small console for the host to load. Like typical consoles, it reads words with std::cin,
// repeats its menu after a failed read without clearing the stream, and prints from a second
// thread.

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>

#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace {

// Prints when the library is unloaded.
struct Farewell {
    ~Farewell() { std::cout << "example closed" << std::endl; }
} farewell;

struct Start {
    Start() {
        if (std::getenv("EXAMPLE_THROWS_AT_LOAD") != nullptr) {
            throw 1;
        }
    }
} start;

std::thread signalThread;

int* volatile lostMemory = nullptr; // volatile: written although never read
int racedCounter = 0;

std::string ReadWord(const char* prompt) {
    for (;;) {
        std::string word;
        std::cout << prompt << std::flush;
        std::cin >> word;
        if (!std::cin.fail() && !std::cin.bad()) {
            return word;
        }
        std::cout << "THE END WAS SEEN\n";
    }
}

// A deeper menu, and one below it.
void RunSubMenu(int depth) {
    for (;;) {
        const std::string word = ReadWord("sub> ");
        if (word == "99") {
            return;
        }
        if (word == "sub" && depth < 3) {
            RunSubMenu(depth + 1);
        }
        std::cout << "sub " << depth << " got " << word << std::endl;
    }
}

// Prints from another thread as soon as the pipe `file` is written to.
void PrintLater(const std::string& file) {
    signalThread = std::thread([file] {
        std::string line;
        std::getline(std::ifstream(file), line);
        std::cout << "signal: " + line + '\n' << std::flush;
    });
}

void ListDescriptorsInChild() {
    std::cout << "child has:" << std::endl;
    const pid_t child = ::vfork();
    if (child == 0) {
        ::execl("/bin/ls", "ls", "-1", "/proc/self/fd", nullptr);
        ::_exit(1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
}

void SwitchEchoOff() {
    termios modes = {};
    ::tcgetattr(STDIN_FILENO, &modes);
    modes.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    ::tcsetattr(STDIN_FILENO, TCSANOW, &modes);
    std::cout << "echo is off" << std::endl;
}

void AnswerUserSignal() {
    struct sigaction action = {};
    action.sa_handler = [](int) { static_cast<void>(!::write(STDOUT_FILENO, "usr1\n", 5)); };
    ::sigaction(SIGUSR1, &action, nullptr); // without SA_RESTART: a read is interrupted
}

void PrintFromTwoThreads(int lines) {
    const auto print = [lines](const char* who) {
        for (int line = 0; line < lines; ++line) {
            std::cout << std::string(who) + " line " + std::to_string(line) + '\n';
        }
    };
    std::thread other(print, "right");
    print("left");
    other.join();
    std::cout << "both done" << std::endl;
}

void Race() {
    std::thread first([] { ++racedCounter; });
    std::thread second([] { ++racedCounter; });
    first.join();
    second.join();
}

} // namespace

extern "C" __attribute__((visibility("default"))) void zarn_startmaindebug() {
    std::cout << "Example" << std::endl;
    for (;;) {
        const std::string word = ReadWord("cmd> ");
        if (word == "99") {
            break;
        } else if (word == "sub") {
            RunSubMenu(1);
        } else if (word == "later") {
            PrintLater(ReadWord("pipe> "));
        } else if (word == "unflushed") {
            std::cout << "not flushed";
        } else if (word == "ask") {
            std::string name;
            std::cin.tie(nullptr);
            std::cout << "name? ";
            std::cin >> name;
            std::cout << "hello " << name << std::endl;
        } else if (word == "child") {
            ListDescriptorsInChild();
        } else if (word == "noecho") {
            SwitchEchoOff();
        } else if (word == "hang") {
            std::cout << "hanging" << std::endl;
            for (;;) {
                ::pause();
            }
        } else if (word == "ignorepipe") {
            static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
        } else if (word == "usr1") {
            AnswerUserSignal();
        } else if (word == "both") {
            PrintFromTwoThreads(2000);
        } else if (word == "crash") {
            std::cout << "about to crash";
            static_cast<void>(::raise(SIGKILL));
        } else if (word == "leak") {
            // Some of the pointers may live on in a register or a dead part of the stack, all of
            // them do not.
            for (int block = 0; block < 100; ++block) {
                lostMemory = new int[100];
            }
            lostMemory = nullptr;
        } else if (word == "throw") {
            throw std::runtime_error("\x1b[31mred\xc2\x9b" + std::string(100000, 'x'));
        } else if (word == "throw-number") {
            throw 1;
        } else if (word == "throw-in-thread") {
            std::thread([] { throw 1; }).join();
        } else if (word == "race") {
            Race();
        } else {
            std::cout << "got " << word << std::endl;
        }
    }
    if (signalThread.joinable()) {
        signalThread.join();
    }
}

extern "C" __attribute__((visibility("default"))) void another_entry() {
    std::cout << "another entry" << std::endl;
}
