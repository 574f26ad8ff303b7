#include <cstdlib>

extern "C" __attribute__((visibility("default"))) void opened_entry() {
    setenv("NORVEX_TEST_OPENED", "called", 1);
}
