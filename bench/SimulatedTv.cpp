#include "SimulatedTv.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Figure.h"

namespace bench {

namespace {

std::string MakeDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "zarn-bench.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        GiveUp(std::strerror(errno));
    return name;
}

[[noreturn]] void BecomeDaemon(const std::vector<std::string>& arguments, int ready, const std::string& log) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int output = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    const int inherited = dup(ready); // without close-on-exec

    std::vector<std::string> words = {NORVEX_SIM, "--ready-fd", std::to_string(inherited)};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    execv(NORVEX_SIM, pointers.data());
    _exit(127);
}

} // namespace

SimulatedTv::SimulatedTv(const std::vector<std::string>& arguments) : m_directory(MakeDirectory()) {
    setenv("NORVEX_SOCKET", (m_directory + "/norvex.sock").c_str(), 1);
    int ready[2];
    if (pipe2(ready, O_CLOEXEC) != 0)
        GiveUp(std::strerror(errno));
    m_process = fork();
    if (m_process < 0)
        GiveUp(std::strerror(errno));
    if (m_process == 0)
        BecomeDaemon(arguments, ready[1], m_directory + "/norvex-sim.log");
    close(ready[1]);
    char byte = 0;
    const ssize_t size = read(ready[0], &byte, 1);
    close(ready[0]);
    if (size != 1)
        GiveUp("norvex-sim did not become ready");
}

SimulatedTv::~SimulatedTv() {
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
}

} // namespace bench
