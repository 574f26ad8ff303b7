#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace bench {

// One of the measured candidates.
struct Candidate {
    std::string name;
    // Runs one round and returns its result, in the unit of the figure.
    std::function<double()> round;
};

// Runs all candidates in turn, `rounds` times after a warm-up round, so that a disturbance of the
// machine affects all of them. Returns the median of each, in order.
std::vector<double> MedianOfRounds(const std::vector<Candidate>& candidates, int rounds);

double Median(std::vector<double> values);

// Nanoseconds per call of `what`, called `count` times.
template <class What> double NanosecondsEach(int count, What&& what) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i)
        what();
    const std::chrono::duration<double, std::nano> passed = std::chrono::steady_clock::now() - begin;
    return passed.count() / count;
}

} // namespace bench
