#pragma once

#include <norvex/client/Profile.h>

// Addresses one pipeline. Ordered, so that it can key a map.
struct NorvexHandle {
    EProfile profile = PROFILE_MAIN;
    // 0: main screen, 1: second screen.
    unsigned short screenId = 0;
};

inline bool operator<(const NorvexHandle& left, const NorvexHandle& right) {
    return left.profile != right.profile ? left.profile < right.profile : left.screenId < right.screenId;
}
