#include "FakeProcesses.h"

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include "Timeline.h"

// The linker leads the calls here (--wrap) and the "real" names to the system's functions.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the linker's names.
// Visible: the core library makes some of these calls as well.
#pragma GCC visibility push(default)
extern "C" {
[[noreturn]] void __real__exit(int status);
pid_t __wrap_vfork();
int __wrap_execl(const char* path, const char* argument, ...);
[[noreturn]] void __wrap__exit(int status);
}
#pragma GCC visibility pop
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace {

bool programs = true;
bool exhausted = false;
std::vector<pid_t> made;
// In a child: where it tells what it did.
int report = -1;

void Tell() {
    for (const std::string& call : Timeline::Now().Calls()) {
        const std::string line = "child: " + call + "\n";
        if (write(report, line.data(), line.size()) < 0)
            __real__exit(120);
    }
    // The child's output would reach the user's terminal from a borrowed stream.
    const std::string output = Timeline::Now().Transcript();
    if (!output.empty()) {
        const std::string line = "child: wrote " + std::to_string(output.size()) + " bytes\n";
        if (write(report, line.data(), line.size()) < 0)
            __real__exit(120);
    }
}

} // namespace

void FakeProcesses::Reset() {
    programs = true;
    exhausted = false;
    made.clear();
}

void FakeProcesses::RemovePrograms() {
    programs = false;
}

void FakeProcesses::Exhaust() {
    exhausted = true;
}

const std::vector<pid_t>& FakeProcesses::GetChildren() {
    return made;
}

int FakeProcesses::WaitForExitStatus(pid_t child) {
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

pid_t __wrap_vfork() {
    Timeline::Now().Call("vfork");
    int ends[2];
    if (exhausted || pipe(ends) != 0) {
        errno = EAGAIN;
        return -1;
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        report = ends[1];
        Timeline::Now().Clear();
        return 0;
    }
    close(ends[1]);
    // The parent stands still until the child has told everything.
    std::string text;
    char buffer[512];
    for (ssize_t count; (count = read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(count));
    close(ends[0]);
    for (std::size_t begin = 0, end; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1)
        Timeline::Now().Call(text.substr(begin, end - begin));
    if (child > 0)
        made.push_back(child);
    return child;
}

int __wrap_execl(const char* path, const char* argument, ...) {
    std::string call = std::string("execl(") + path + "; " + argument;
    va_list more;
    va_start(more, argument);
    while (const char* next = va_arg(more, const char*))
        call += std::string(", ") + next;
    va_end(more);
    Timeline::Now().Call(call + ")");
    if (programs && report >= 0) {
        Tell();
        __real__exit(0);
    }
    errno = ENOENT;
    return -1;
}

void __wrap__exit(int status) {
    if (report >= 0) {
        Timeline::Now().Call("_exit(" + std::to_string(status) + ")");
        Tell();
    }
    __real__exit(status);
}
