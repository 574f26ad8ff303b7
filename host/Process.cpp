#include "Process.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <initializer_list>

#include <fcntl.h>
#include <linux/close_range.h>
#include <termios.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define HOST_FINDS_LEAKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOST_FINDS_LEAKS 1
#endif
#endif

#ifdef HOST_FINDS_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

#ifdef ZARN_COVERAGE
#include <dlfcn.h>
#include <link.h>
#endif

#ifdef ZARN_COVERAGE
namespace {

// Each library has counters of its own, which its own copy of __gcov_dump writes.
void WriteCoverage() {
    link_map* object = nullptr;
    if (::dlinfo(::dlopen(nullptr, RTLD_LAZY), RTLD_DI_LINKMAP, &object) != 0) {
        return;
    }
    for (; object; object = object->l_next) {
        void* const library = ::dlopen(object->l_name, RTLD_LAZY | RTLD_NOLOAD);
        if (library) {
            if (void* const dump = ::dlsym(library, "__gcov_dump")) {
                reinterpret_cast<void (*)()>(dump)();
            }
        }
    }
}

} // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the compiler's name.
extern "C" void __gcov_dump();
#endif

namespace host {

namespace {

// Read by a signal handler; written once, before it is installed.
int savedTerminal = -1;
termios savedModes;

bool SameModes(const termios& left, const termios& right) {
    return left.c_iflag == right.c_iflag && left.c_oflag == right.c_oflag && left.c_cflag == right.c_cflag &&
           left.c_lflag == right.c_lflag && std::memcmp(left.c_cc, right.c_cc, sizeof left.c_cc) == 0;
}

void RestoreAndDie(int signal) {
    RestoreTerminalModes();
    // The handler was reset on entry and the signal is not blocked: this ends the process.
    static_cast<void>(::raise(signal));
}

} // namespace

void PrepareStandardDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            // Takes the lowest free number: this one.
            static_cast<void>(::open("/dev/null", O_RDWR));
        }
    }

    // Descriptors that the caller's shell or build tool left open are closed in the plug-in's
    // children too. Kernels before 5.11 lack this call and leave them open.
    static_cast<void>(::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC));

    // The caller may ignore it; a console would then print for ever after its reader has gone.
    static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
}

void SaveTerminalModes() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO && savedTerminal == -1; ++descriptor) {
        if (::tcgetattr(descriptor, &savedModes) == 0) {
            savedTerminal = descriptor;
        }
    }
    if (savedTerminal == -1) {
        return;
    }

    struct sigaction action = {};
    action.sa_handler = RestoreAndDie;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_DFL) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

void RestoreTerminalModes() {
    if (savedTerminal == -1) {
        return;
    }
    const int savedErrno = errno;
    termios now = {};
    // In the background the modes belong to the foreground program, and setting them would stop
    // this process.
    if (::tcgetpgrp(savedTerminal) == ::getpgrp() && ::tcgetattr(savedTerminal, &now) == 0 &&
        !SameModes(now, savedModes)) {
        ::tcsetattr(savedTerminal, TCSANOW, &savedModes);
    }
    errno = savedErrno;
}

void WriteProcessReports() {
#ifdef ZARN_COVERAGE
    __gcov_dump();
    WriteCoverage();
#endif
#ifdef HOST_FINDS_LEAKS
    __lsan_do_leak_check();
#endif
}

} // namespace host
