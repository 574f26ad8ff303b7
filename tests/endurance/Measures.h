#pragma once

#include <cstddef>

// What the process holds at the moment.
struct Measures {
    std::size_t heap = 0;        // bytes that have been allocated and not freed
    std::size_t resident = 0;    // bytes of memory that are its own and in use
    std::size_t descriptors = 0; // open
    std::size_t threads = 0;

    // Children that have ended are reaped, and those that are ending waited for; a thread that has
    // been joined is given the time to leave the system's list.
    static Measures Take();
};

// Children that have ended by now leave the system's list.
void ReapEnded();
