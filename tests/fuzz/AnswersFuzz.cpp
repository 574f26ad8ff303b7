// What norvex-simctl is answered: what the TV's control socket says until it ends. Whatever it is, the program ends with a
// status.

#include <span>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

#include "Ask.h"
#include "Require.h"

namespace {

std::span<const std::uint8_t> answer;
int tvEnd = -1;

} // namespace

// In place of the C library's: whoever connects finds the answer there already, and its end.
extern "C" __attribute__((visibility("default"))) int connect(int socket, const sockaddr*, socklen_t) {
    int ends[2];
    REQUIRE(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
    REQUIRE(dup2(ends[0], socket) == socket);
    close(ends[0]);
    tvEnd = ends[1];
    if (!answer.empty())
        send(tvEnd, answer.data(), answer.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    shutdown(tvEnd, SHUT_WR);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    answer = {data, size};
    const int status = simctl::Ask("socket", {"state"});
    REQUIRE(status >= 0 && status <= 2);
    if (tvEnd >= 0)
        close(std::exchange(tvEnd, -1));
    return 0;
}
