#pragma once

#include <string>

namespace sim {

// A whole regular file. False: `error` is "NAME: " and why not.
bool ReadLineUpFile(const std::string& path, const std::string& name, std::string& text,
                    std::string& error);

} // namespace sim
