#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace bench {

// The daemon as it ships, on a private socket to which NORVEX_SOCKET is set. Ready when the
// constructor returns; the destructor ends it and removes its files.
class SimulatedTv {
public:
    // `arguments` are further arguments of the daemon. Ends the program if the daemon does not
    // start.
    explicit SimulatedTv(const std::vector<std::string>& arguments = {});
    ~SimulatedTv();
    SimulatedTv(const SimulatedTv&) = delete;
    SimulatedTv& operator=(const SimulatedTv&) = delete;

    pid_t GetProcess() const { return m_process; }

private:
    std::string m_directory;
    pid_t m_process = -1;
};

} // namespace bench
