#pragma once

#include <string>

namespace walk::tables {

inline const std::string kInvalidService = "18446744073709551615";

// The frame of a menu of the test console, with the line end that follows it.
inline std::string framed(const std::string& title, const std::string& items) {
    return "====================================\n" + title +
           "------------------------------------\n" + items +
           "------------------------------------\n"
           " 99 : Exit\n"
           "====================================\n"
           "\n";
}

} // namespace walk::tables
