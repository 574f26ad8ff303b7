#include <norvex/device/LogTags.h>

#include "DeviceService.h"

int startdlogtagbydefault(const char* tag) {
    return deviceservice::Call("StartLogTag", 1, tag);
}

int stopdlogtagbydefault(const char* tag) {
    return deviceservice::Call("StopLogTag", 2, tag);
}
