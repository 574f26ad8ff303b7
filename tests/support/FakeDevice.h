#pragma once

#include <string>

// The device's log tags, path resolver and key-value store. Each call is on the time line:
// "startdlogtagbydefault(quarle-daemon)", "TCPathResolver::GetAbsolutePath(6, a/b)",
// "vconf_get_int(db/x)".
namespace FakeDevice {

// Directory that stands for every directory of the device; the resolver joins it with the relative
// path. Empty at first.
void SetDirectory(const std::string& directory);
// What the log tag switches answer; 0 at first.
void SetLogTagResult(int result);
// A key of the store. A key that was not set answers -1 and leaves the value as it was.
void SetVconf(const std::string& key, int value);
void ClearVconf();

} // namespace FakeDevice
