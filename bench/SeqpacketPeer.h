#pragma once

#include <string>

#include "ForkedProcess.h"

namespace bench {

// The minimum cost of a call between two processes: the bytes of a command out, a status and the
// bytes of a screen back, over SOCK_SEQPACKET, without framing, names or checks.
class SeqpacketPeer {
public:
    explicit SeqpacketPeer(const std::string& screen);

    int Execute(const std::string& word, std::string& screen);

private:
    ForkedProcess m_process;
};

} // namespace bench
