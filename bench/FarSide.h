#pragma once

#include <functional>

#include <sys/types.h>

namespace bench {

// A process of its own at the other end of a socket pair, forked from this one. Owns the process
// and this end.
//
// Fork before anything here starts a thread.
class TCFarSide {
public:
    // `serve` gets the other end's descriptor and returns when this end has gone. `socketType` is
    // SOCK_SEQPACKET or SOCK_STREAM. Ends the program when there is no process to be had.
    TCFarSide(int socketType, const std::function<void(int descriptor)>& serve);
    // Closes this end and waits for the process.
    ~TCFarSide();
    TCFarSide(const TCFarSide&) = delete;
    TCFarSide& operator=(const TCFarSide&) = delete;

    int Descriptor() const { return m_Descriptor; }
    // Hands this end over to whoever closes it from now on.
    int ReleaseDescriptor();

private:
    int m_Descriptor = -1;
    pid_t m_Process = -1;
};

// Ends the program with a line on standard error: a figure that could not be taken is none.
[[noreturn]] void GiveUp(const char* what);

} // namespace bench
