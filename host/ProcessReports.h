#pragma once

namespace host {

// What instrumented builds report when a process ends, for a process that ends without running its
// exit handlers: the counted lines and branches, and the leaks, which end the process here where
// there are any. (The thread sanitizer takes care of its own.) Does nothing in a plain build.
void WriteProcessReports();

} // namespace host
