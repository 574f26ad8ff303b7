#pragma once

#include "FarSide.h"

#include <functional>
#include <vector>

namespace bench {

// A process of its own that runs rounds when it is asked to: a program talks with one TV only, the
// one that NORVEX_SOCKET named when it was started.
class TCRoundProcess {
public:
    // `rounds` run over there, one at a time.
    explicit TCRoundProcess(const std::vector<std::function<double()>>& rounds);

    // Runs the round of that place in the list and returns its result.
    double Run(std::size_t round);

private:
    TCFarSide m_FarSide;
};

} // namespace bench
