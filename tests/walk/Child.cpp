#include "Child.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Playback.h"
#include "Walk.h"

namespace walk {

std::string Ending::text() const {
    if (signal != 0)
        return std::string("ended by signal ") + std::to_string(signal) + " (" + strsignal(signal) +
               ")";
    if (status == Playback::kDiffers)
        return "differs from the prediction";
    if (status == kLeaks)
        return "loses memory";
    return "ended with status " + std::to_string(status);
}

Ending runChild(const std::string& program, const std::vector<std::string>& arguments, bool quiet) {
    if (std::fflush(stdout) != 0)
        std::perror("walk: no output");
    const pid_t child = fork();
    if (child < 0) {
        std::perror("walk: no process");
        std::exit(1);
    }
    if (child == 0) {
        // The first report ends a run: what follows would be another run's.
        const char* old = std::getenv("TSAN_OPTIONS");
        setenv("TSAN_OPTIONS", ((old ? old + std::string(":") : "") + "halt_on_error=1").c_str(),
               1);
        if (quiet) {
            const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
        }
        std::vector<char*> argv{const_cast<char*>(program.c_str())};
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        execv(program.c_str(), argv.data());
        std::perror("walk: no program");
        ::_exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status))
        return {0, WTERMSIG(status)};
    return {WEXITSTATUS(status), 0};
}

} // namespace walk
