#include <norvex/device/Vconf.h>

#include "DeviceService.h"

int vconf_get_int(const char* key, int* value) {
    return deviceservice::Call("GetInt", 0, key, value);
}
