#pragma once

#include <functional>
#include <vector>

#include "ForkedProcess.h"

namespace bench {

// A process that runs rounds on request: a program calls one TV only, the one that NORVEX_SOCKET
// named when it was forked.
class RoundProcess {
public:
    // `rounds` run in the process, one at a time.
    explicit RoundProcess(const std::vector<std::function<double()>>& rounds);

    // Runs `rounds[round]` and returns its result.
    double Run(std::size_t round);

private:
    ForkedProcess m_process;
};

} // namespace bench
