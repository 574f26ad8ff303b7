#pragma once

#include <string>
#include <string_view>

// What every program does.
namespace sim {

// To be called first in main. Afterwards descriptors 0 to 2 are open, so that no file or socket that is opened
// later takes their numbers: one that was closed reads as empty, and writing to it fails.
void OpenStandardDescriptors();

// `text` with its control characters as "\x1b", so that it is safe on a terminal. Line ends and tabs stay.
std::string EscapeControls(std::string_view text);

// Writes "PROGRAM: ..." to standard error, as one line, escaped; a long one is cut.
void Complain(const char* program, std::string_view line);

// Whether all that was printed on stdout could be written; complains if not.
bool FlushOutput(const char* program);

} // namespace sim
