#include "ConsoleProcess.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Figure.h"

namespace bench {

ConsoleProcess::ConsoleProcess(const std::vector<std::string>& words) {
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    int input[2];
    int output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0)
        GiveUp(std::strerror(errno));

    std::vector<std::string> copies = words;
    std::vector<char*> pointers;
    for (std::string& word : copies)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    const int error = posix_spawn(&m_process, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        GiveUp(std::strerror(error));
    close(input[0]);
    close(output[1]);
    m_input = input[1];
    m_output = output[0];
}

ConsoleProcess::~ConsoleProcess() {
    close(m_input);
    close(m_output);
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
}

void ConsoleProcess::Type(std::string_view words) {
    while (!words.empty()) {
        const ssize_t size = write(m_input, words.data(), words.size());
        if (size < 0)
            GiveUp("the console does not read its input");
        words.remove_prefix(static_cast<std::size_t>(size));
    }
}

void ConsoleProcess::Await(std::string_view text, std::size_t times) {
    char block[65536];
    while (times > 0) {
        const std::size_t found = m_read.find(text, m_seen);
        if (found != std::string::npos) {
            m_seen = found + text.size();
            --times;
            continue;
        }
        const ssize_t size = read(m_output, block, sizeof block);
        if (size <= 0)
            GiveUp("the console ended");
        m_read.append(block, static_cast<std::size_t>(size));
    }
}

std::size_t ConsoleProcess::Count(std::string_view text) const {
    std::size_t count = 0;
    for (std::size_t place = m_read.find(text); place < m_seen; place = m_read.find(text, place + 1))
        ++count;
    return count;
}

} // namespace bench
