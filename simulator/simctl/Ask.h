#pragma once

#include <string>
#include <vector>

namespace simctl {

// Writes "norvex-simctl: ..." to standard error.
void Complain(const std::string& line);
// Whether all output could be written; reports it if not.
bool Flush();

// Sends the arguments to the TV at the socket and prints the answer. Returns the program's status:
// the TV's, or 1 with a line on standard error if the answer is incomplete.
int Ask(const std::string& socketPath, const std::vector<std::string>& arguments);

} // namespace simctl
