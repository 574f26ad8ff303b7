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

State& state() {
    static State* theState = new State;
    return *theState;
}

} // namespace

void FakeDevice::setDirectory(const std::string& directory) {
    state().directory = directory;
}

void FakeDevice::setLogTagResult(int result) {
    state().logTagResult = result;
}

void FakeDevice::setVconf(const std::string& key, int value) {
    state().vconf[key] = value;
}

void FakeDevice::clearVconf() {
    state().vconf.clear();
}

int startdlogtagbydefault(const char* tag) {
    Timeline::now().call(std::string("startdlogtagbydefault(") + tag + ")");
    return state().logTagResult;
}

int stopdlogtagbydefault(const char* tag) {
    Timeline::now().call(std::string("stopdlogtagbydefault(") + tag + ")");
    return state().logTagResult;
}

std::string TCPathResolver::GetAbsolutePath(EDeviceDirectory directory,
                                            const std::string& relativePath) {
    Timeline::now().call("TCPathResolver::GetAbsolutePath(" + std::to_string(directory) + ", " +
                         relativePath + ")");
    return state().directory + "/" + relativePath;
}

int vconf_get_int(const char* key, int* value) {
    Timeline::now().call(std::string("vconf_get_int(") + key + ")");
    const auto found = state().vconf.find(key);
    if (found == state().vconf.end())
        return -1;
    *value = found->second;
    return 0;
}
