#pragma once

namespace host {

// What instrumented builds (sanitizers, coverage) report when a process ends, for a process that
// ends without running its exit handlers: leaks, counted lines, and a status other than `status`
// where a race was reported. Returns the status to end with; in a plain build that is `status` and
// nothing is done.
int WriteProcessReports(int status);

} // namespace host
