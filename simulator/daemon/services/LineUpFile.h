#pragma once

#include <string>

namespace sim {

// Reads a whole regular file. False: `error` is "NAME: " and the reason.
bool ReadLineUpFile(const std::string& path, const std::string& name, std::string& text, std::string& error);

} // namespace sim
