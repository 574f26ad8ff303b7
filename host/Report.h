#pragma once

#include <string_view>

namespace host {

// Writes "zarn-debughost: ..." to standard error, as one line that is safe to show on a terminal: control
// characters are escaped, and a long line is cut. Any thread.
void Report(std::string_view line);

} // namespace host
