#pragma once

#include <cstdint>
#include <string>

// What a walking process leaves behind, so that nothing is lost with it: files in a folder.
namespace walk {

struct Progress {
    // Words typed in sessions that are through, and the seed of the next one.
    long words = 0;
    std::uint64_t seed = 0;
    // The counts of the rows.
    std::string rows;
};

// Each is replaced as a whole.
void writeProgress(const std::string& folder, const Progress& progress);
Progress readProgress(const std::string& folder);
// The words of the session that is under way.
void writeSession(const std::string& folder, const std::string& words);
std::string readSession(const std::string& folder);

} // namespace walk
