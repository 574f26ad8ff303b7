#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace bench {

// The daemon as it ships, on a private socket that NORVEX_SOCKET names from then on. Ready when the
// constructor returns, ended and cleared away by the destructor.
class TCSimulatedTv {
public:
    // `arguments` are the daemon's own, beside the socket and the readiness. Ends the program when
    // the daemon does not start.
    explicit TCSimulatedTv(const std::vector<std::string>& arguments = {});
    ~TCSimulatedTv();
    TCSimulatedTv(const TCSimulatedTv&) = delete;
    TCSimulatedTv& operator=(const TCSimulatedTv&) = delete;

    pid_t Process() const { return m_Process; }

private:
    std::string m_Directory;
    pid_t m_Process = -1;
};

} // namespace bench
