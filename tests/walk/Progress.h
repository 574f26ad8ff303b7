#pragma once

#include <cstdint>
#include <map>
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

// The words of sessions that are under way, or through but not yet known to have lost nothing; by
// their seeds.
void writeSession(const std::string& folder, std::uint64_t seed, const std::string& words);
std::map<std::uint64_t, std::string> readSessions(const std::string& folder);
void forgetSessions(const std::string& folder);

} // namespace walk
