#include "SeqpacketPeer.h"

#include <cstring>

#include <sys/socket.h>

#include "Figure.h"

namespace bench {

namespace {

constexpr std::size_t kPacketSize = 4096;

void Serve(int descriptor, const std::string& screen) {
    char packet[kPacketSize];
    const int status = 1;
    while (recv(descriptor, packet, sizeof packet, 0) > 0) {
        std::memcpy(packet, &status, sizeof status);
        std::memcpy(packet + sizeof status, screen.data(), screen.size());
        if (send(descriptor, packet, sizeof status + screen.size(), MSG_NOSIGNAL) < 0)
            return;
    }
}

} // namespace

SeqpacketPeer::SeqpacketPeer(const std::string& screen)
    : m_process(SOCK_SEQPACKET, [&screen](int descriptor) { Serve(descriptor, screen); }) {
    if (screen.size() > kPacketSize - sizeof(int))
        GiveUp("the screen is too long for one bare packet");
}

int SeqpacketPeer::Execute(const std::string& word, std::string& screen) {
    char packet[kPacketSize];
    int status = -1;
    if (send(m_process.GetDescriptor(), word.data(), word.size(), MSG_NOSIGNAL) < 0)
        GiveUp("the bare peer has gone");
    const ssize_t size = recv(m_process.GetDescriptor(), packet, sizeof packet, 0);
    if (size < static_cast<ssize_t>(sizeof status))
        GiveUp("the bare peer has gone");
    std::memcpy(&status, packet, sizeof status);
    screen.assign(packet + sizeof status, static_cast<std::size_t>(size) - sizeof status);
    return status;
}

} // namespace bench
