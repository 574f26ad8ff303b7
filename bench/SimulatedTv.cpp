#include "SimulatedTv.h"

#include "FarSide.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

std::string MakeDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "zarn-bench.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        GiveUp(std::strerror(errno));
    return name;
}

[[noreturn]] void BecomeDaemon(const std::vector<std::string>& arguments, int ready,
                               const std::string& log) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int output = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    const int inherited = dup(ready); // stays open across exec, the pipe's own end does not

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

TCSimulatedTv::TCSimulatedTv(const std::vector<std::string>& arguments)
    : m_Directory(MakeDirectory()) {
    setenv("NORVEX_SOCKET", (m_Directory + "/norvex.sock").c_str(), 1);
    int ready[2];
    if (pipe2(ready, O_CLOEXEC) != 0)
        GiveUp(std::strerror(errno));
    m_Process = fork();
    if (m_Process < 0)
        GiveUp(std::strerror(errno));
    if (m_Process == 0)
        BecomeDaemon(arguments, ready[1], m_Directory + "/norvex-sim.log");
    close(ready[1]);
    char byte = 0;
    const ssize_t told = read(ready[0], &byte, 1);
    close(ready[0]);
    if (told != 1)
        GiveUp("norvex-sim did not become ready");
}

TCSimulatedTv::~TCSimulatedTv() {
    kill(m_Process, SIGTERM);
    waitpid(m_Process, nullptr, 0);
    std::error_code ignored;
    std::filesystem::remove_all(m_Directory, ignored);
}

} // namespace bench
