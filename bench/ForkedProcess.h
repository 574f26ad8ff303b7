#pragma once

#include <functional>

#include <sys/types.h>

namespace bench {

// A process forked from this one, at the other end of a socket pair. Owns the process and this end.
//
// To be made before this program starts a thread.
class ForkedProcess {
public:
    // `serve` runs in the process with the other end's descriptor, until this end is closed.
    // `socketType` is SOCK_SEQPACKET or SOCK_STREAM. Ends this program when it cannot fork.
    ForkedProcess(int socketType, const std::function<void(int descriptor)>& serve);
    // Closes this end and waits for the process.
    ~ForkedProcess();
    ForkedProcess(const ForkedProcess&) = delete;
    ForkedProcess& operator=(const ForkedProcess&) = delete;

    int GetDescriptor() const { return m_descriptor; }
    // This end, which the caller closes from now on.
    int ReleaseDescriptor();

private:
    int m_descriptor = -1;
    pid_t m_process = -1;
};

} // namespace bench
