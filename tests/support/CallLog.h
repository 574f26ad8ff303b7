#pragma once

#include <string>
#include <vector>

// The calls that reached the faked platform, as texts, in the order in which they came. One log for
// all fakes, so that a test compares one list. Any thread.
namespace CallLog {

void Record(std::string call);
// Everything since the last Clear.
std::vector<std::string> Calls();
void Clear();

} // namespace CallLog
