#include "FakeDevice.h"

#include <map>

#include <norvex/device/LogTags.h>
#include <norvex/device/PathResolver.h>
#include <norvex/device/Vconf.h>

#include "Timeline.h"

namespace {

struct State {
    std::string directory;
    int logTagResult = 0;
    std::map<std::string, int> vconf;
};

State& GetState() {
    static State* theState = new State;
    return *theState;
}

} // namespace

void FakeDevice::SetDirectory(const std::string& directory) {
    GetState().directory = directory;
}

void FakeDevice::SetLogTagResult(int result) {
    GetState().logTagResult = result;
}

void FakeDevice::SetVconf(const std::string& key, int value) {
    GetState().vconf[key] = value;
}

void FakeDevice::ClearVconf() {
    GetState().vconf.clear();
}

int startdlogtagbydefault(const char* tag) {
    Timeline::Now().Call(std::string("startdlogtagbydefault(") + tag + ")");
    return GetState().logTagResult;
}

int stopdlogtagbydefault(const char* tag) {
    Timeline::Now().Call(std::string("stopdlogtagbydefault(") + tag + ")");
    return GetState().logTagResult;
}

std::string TCPathResolver::GetAbsolutePath(EDeviceDirectory directory,
                                            const std::string& relativePath) {
    Timeline::Now().Call("TCPathResolver::GetAbsolutePath(" + std::to_string(directory) + ", " +
                         relativePath + ")");
    return GetState().directory + "/" + relativePath;
}

int vconf_get_int(const char* key, int* value) {
    Timeline::Now().Call(std::string("vconf_get_int(") + key + ")");
    const auto found = GetState().vconf.find(key);
    if (found == GetState().vconf.end())
        return -1;
    *value = found->second;
    return 0;
}
