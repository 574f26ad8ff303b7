#include <zarn/DebugPrintControl.h>

// Out of line, so that the virtual table stands in one place.
IDebugPrintControl::~IDebugPrintControl() = default;
