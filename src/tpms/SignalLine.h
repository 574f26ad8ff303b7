#pragma once

#include <string>

#include <norvex/client/Signal.h>

// The line, with its end, that the console prints for a signal; empty for a signal that it does not
// print.
std::string signalLine(ESignalType type, EProfile profile, unsigned short screenId, TSSignalData data);
