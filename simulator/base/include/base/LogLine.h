#pragma once

#include <cstddef>

// The form of a line of any of the simulator's logs: "2026-03-01T12:00:00.123 4711 tag: text".
namespace sim {

// Puts time, process and tag at `line`, which holds `size` bytes; how many it took. Any thread.
std::size_t WriteLogPrefix(char* line, std::size_t size, const char* tag);

// Texts from elsewhere must not make lines, or terminal sequences, of their own: line ends and other control characters
// become '?'.
void MaskControlCharacters(char* text, std::size_t size);

} // namespace sim
