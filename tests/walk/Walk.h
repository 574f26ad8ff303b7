#pragma once

#include "Options.h"

namespace walk {

// What ends a process that has lost memory; the report is on standard error by then.
inline constexpr int kLeaks = 4;

// In this process, until the words or the time are used up. 0, or the process ends with what became
// of it: Playback::kDiffers, a sanitizer's report, a crash.
int walk(const Options& options);
// One session with given words, the same way.
int replay(const Options& options);

// Lets a process walk, and another one in its place when it has ended with a finding; tells each
// with its seed and the shortest run that shows it. The last line tells words, seed and findings.
// 0 without findings, 1 with some.
int watchOver(const Options& options, const std::string& program);

} // namespace walk
