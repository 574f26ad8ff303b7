#pragma once

#include "ForkedProcess.h"

#include <string>

namespace bench {

// The least that a call between two processes costs: the bytes of a word there, a status and the
// bytes of a screen back, over SOCK_SEQPACKET, without a frame, a name or a check.
class SeqpacketPeer {
public:
    explicit SeqpacketPeer(const std::string& screen);

    int Execute(const std::string& word, std::string& screen);

private:
    ForkedProcess m_process;
};

} // namespace bench
