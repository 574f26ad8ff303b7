#include "TerminalModes.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <initializer_list>

#include <termios.h>
#include <unistd.h>

namespace host {

namespace {

// Read by a signal handler: written once, before the handler is installed.
int keptTerminal = -1;
termios keptModes;

bool SameModes(const termios& left, const termios& right) {
    return left.c_iflag == right.c_iflag && left.c_oflag == right.c_oflag &&
           left.c_cflag == right.c_cflag && left.c_lflag == right.c_lflag &&
           std::memcmp(left.c_cc, right.c_cc, sizeof left.c_cc) == 0;
}

void RestoreAndDie(int signal) {
    RestoreTerminalModes();
    // The handler was taken out on entry and does not hold the signal back: this ends the process.
    static_cast<void>(::raise(signal));
}

} // namespace

void KeepTerminalModes() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO && keptTerminal == -1;
         ++descriptor) {
        if (::tcgetattr(descriptor, &keptModes) == 0) {
            keptTerminal = descriptor;
        }
    }
    if (keptTerminal == -1) {
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
    if (keptTerminal == -1) {
        return;
    }
    const int kept = errno;
    termios now = {};
    // In the background the modes are those of the program in front, and touching them would stop
    // this process.
    if (::tcgetpgrp(keptTerminal) == ::getpgrp() && ::tcgetattr(keptTerminal, &now) == 0 &&
        !SameModes(now, keptModes)) {
        ::tcsetattr(keptTerminal, TCSANOW, &keptModes);
    }
    errno = kept;
}

} // namespace host
