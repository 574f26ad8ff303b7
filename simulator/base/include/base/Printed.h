#pragma once

#include <string>

namespace sim {

// A text of any length, formatted as by printf.
__attribute__((format(printf, 1, 2))) std::string Printed(const char* format, ...);

} // namespace sim
