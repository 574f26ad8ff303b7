#include "FakeDevice.h"

#include <map>

#include <norvex/device/LogTags.h>
#include <norvex/device/PathResolver.h>
#include <norvex/device/Vconf.h>

#include "Timeline.h"

namespace {

std::string deviceDirectory;
int logTagResult = 0;
std::map<std::string, int> store;

} // namespace

void FakeDevice::SetDirectory(const std::string& directory) {
    deviceDirectory = directory;
}

void FakeDevice::SetLogTagResult(int result) {
    logTagResult = result;
}

void FakeDevice::SetVconf(const std::string& key, int value) {
    store[key] = value;
}

void FakeDevice::ClearVconf() {
    store.clear();
}

int startdlogtagbydefault(const char* tag) {
    Timeline::Now().Call(std::string("startdlogtagbydefault(") + tag + ")");
    return logTagResult;
}

int stopdlogtagbydefault(const char* tag) {
    Timeline::Now().Call(std::string("stopdlogtagbydefault(") + tag + ")");
    return logTagResult;
}

std::string TCPathResolver::GetAbsolutePath(EDeviceDirectory directory, const std::string& relativePath) {
    Timeline::Now().Call("TCPathResolver::GetAbsolutePath(" + std::to_string(directory) + ", " + relativePath + ")");
    return deviceDirectory + "/" + relativePath;
}

int vconf_get_int(const char* key, int* value) {
    Timeline::Now().Call(std::string("vconf_get_int(") + key + ")");
    const auto found = store.find(key);
    if (found == store.end())
        return -1;
    *value = found->second;
    return 0;
}
