#include "ForkedProcess.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Figure.h"

namespace bench {

ForkedProcess::ForkedProcess(int socketType, const std::function<void(int)>& serve) {
    int ends[2];
    if (socketpair(AF_UNIX, socketType | SOCK_CLOEXEC, 0, ends) != 0)
        GiveUp(std::strerror(errno));
    m_process = fork();
    if (m_process < 0)
        GiveUp(std::strerror(errno));
    if (m_process == 0) {
        // Ends with the measuring program, however that ends.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close(ends[0]);
        serve(ends[1]);
        _exit(0);
    }
    close(ends[1]);
    m_descriptor = ends[0];
}

ForkedProcess::~ForkedProcess() {
    if (m_descriptor >= 0)
        close(m_descriptor);
    // It may still be working on something that is no longer needed.
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0);
}

int ForkedProcess::ReleaseDescriptor() {
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    return descriptor;
}

} // namespace bench
