#pragma once

#include <iostream>

// The line that reports a call's result: exactly 1 is success, any other number a failure.
// "Succesfully" is what test scripts look for.
inline void printCallResult(const char* label, int result) {
    std::cout << (result == 1 ? "Succesfully called " : "Fail to ") << label << ", ret=" << result << std::endl;
}
