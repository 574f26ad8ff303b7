#pragma once

#include <string_view>

// The simulated device's log. A line has a time, the process, a tag and a text:
//
//     2026-03-01T12:00:00.123 4711 norvex-api: the TV service is not running ...
//
// Lines go to the file that the environment variable NORVEX_LOG names or, without it, to
// norvex/norvex.log in the user's state directory; never to standard output or error. The file is
// opened with the first line. A line that cannot be written is dropped: the log never makes a call
// fail.
namespace devicelog {

// Writes one line with a single write, so that lines of several processes are never interleaved.
// Line ends and other control characters in `text` become '?', lines are truncated at 4000 bytes.
// Any thread.
void Write(std::string_view tag, std::string_view text);

// The same, formatted as by printf.
void Print(const char* tag, const char* format, ...) __attribute__((format(printf, 2, 3)));

} // namespace devicelog
