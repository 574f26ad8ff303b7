#pragma once

#include <cstddef>

// The format of a line in all logs of the simulator: "2026-03-01T12:00:00.123 4711 tag: text".
namespace sim {

// Writes time, process and tag to `line`, which has `size` bytes; returns the number written. Any
// thread.
std::size_t WriteLogPrefix(char* line, std::size_t size, const char* tag);

// External texts must not produce lines or terminal sequences, and a log is UTF-8: line ends, other
// control characters and each byte that is not UTF-8 become '?'.
void MaskUnprintable(char* text, std::size_t size);

} // namespace sim
