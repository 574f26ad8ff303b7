#pragma once

// Everything is built with hidden visibility; what one of the device's libraries offers to others
// carries this mark.
#define NORVEX_API __attribute__((visibility("default")))
