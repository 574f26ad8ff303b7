#include "FarSide.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

void GiveUp(const char* what) {
    static_cast<void>(std::fprintf(stderr, "bench: %s\n", what));
    std::_Exit(1);
}

TCFarSide::TCFarSide(int socketType, const std::function<void(int)>& serve) {
    int ends[2];
    if (socketpair(AF_UNIX, socketType | SOCK_CLOEXEC, 0, ends) != 0)
        GiveUp(std::strerror(errno));
    m_Process = fork();
    if (m_Process < 0)
        GiveUp(std::strerror(errno));
    if (m_Process == 0) {
        // Ends with the program that measures, however that ends.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close(ends[0]);
        serve(ends[1]);
        _exit(0);
    }
    close(ends[1]);
    m_Descriptor = ends[0];
}

TCFarSide::~TCFarSide() {
    if (m_Descriptor >= 0)
        close(m_Descriptor);
    // A far side that is still busy with something has nothing left to say.
    kill(m_Process, SIGTERM);
    waitpid(m_Process, nullptr, 0);
}

int TCFarSide::ReleaseDescriptor() {
    const int descriptor = m_Descriptor;
    m_Descriptor = -1;
    return descriptor;
}

} // namespace bench
