#pragma once

// Everything is built with hidden visibility; what a library of the device exports carries this
// mark.
#define NORVEX_API __attribute__((visibility("default")))
