#include "Program.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Figure.h"

namespace bench {

namespace {

struct Pipe {
    Pipe() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            GiveUp(std::strerror(errno));
        read = ends[0];
        write = ends[1];
    }
    int read;
    int write;
};

pid_t Spawn(const std::vector<std::string>& words, int input, int output) {
    std::vector<std::string> copies = words;
    std::vector<char*> pointers;
    for (std::string& word : copies)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t process = -1;
    const int error = posix_spawn(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        GiveUp(std::strerror(error));
    return process;
}

void Feed(int descriptor, const std::string& input) {
    std::size_t fed = 0;
    while (fed < input.size()) {
        const ssize_t size = write(descriptor, input.data() + fed, input.size() - fed);
        if (size < 0)
            break; // it no longer reads
        fed += static_cast<std::size_t>(size);
    }
    close(descriptor);
}

} // namespace

PipedRun RunPiped(const std::vector<std::string>& words, const std::string& input, std::size_t kept) {
    if (std::signal(SIGPIPE, SIG_IGN) == SIG_ERR)
        GiveUp(std::strerror(errno));
    PipedRun run;
    Pipe in;
    Pipe out;
    const auto begin = std::chrono::steady_clock::now();
    const pid_t process = Spawn(words, in.read, out.write);
    close(in.read);
    close(out.write);
    std::thread feeder(Feed, in.write, std::cref(input));

    char block[65536];
    ssize_t size = 0;
    while ((size = read(out.read, block, sizeof block)) > 0) {
        const auto count = static_cast<std::size_t>(size);
        run.output.append(block, std::min(count, kept - std::min(kept, run.outputSize)));
        run.outputSize += count;
    }
    close(out.read);
    int status = 0;
    waitpid(process, &status, 0);
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    run.seconds = passed.count();
    feeder.join();
    if (status != 0)
        GiveUp((words[0] + " failed").c_str());
    return run;
}

std::string OutputOf(const std::vector<std::string>& words) {
    return RunPiped(words, {}, 65536).output;
}

} // namespace bench
