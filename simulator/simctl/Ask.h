#pragma once

#include <string>
#include <vector>

namespace simctl {

// Writes "norvex-simctl: ..." to standard error.
void Complain(const std::string& line);
// Whether all that was printed could be written; it was said if not.
bool Flush();

// Sends the arguments to the TV at the socket, and prints what it answers. The program's status: the TV's, or 1 with a
// line on standard error when it does not answer in full.
int Ask(const std::string& socketPath, const std::vector<std::string>& arguments);

} // namespace simctl
