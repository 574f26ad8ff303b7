#include "Rounds.h"

#include <algorithm>

namespace bench {

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::vector<double> MedianOfRounds(const std::vector<Candidate>& candidates, int rounds) {
    std::vector<std::vector<double>> results(candidates.size());
    for (int round = -1; round < rounds; ++round) {
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            const double result = candidates[i].round();
            if (round >= 0)
                results[i].push_back(result);
        }
    }

    std::vector<double> medians;
    for (const std::vector<double>& of : results)
        medians.push_back(Median(of));
    return medians;
}

} // namespace bench
