#pragma once

#include <string>

namespace sim {

// The default path of the socket: norvex.sock in the user's run-time directory or, without one, in
// the user's directory under /tmp.
std::string GetDefaultSocketPath();
// The path in NORVEX_SOCKET or, without it, the default one.
std::string FindSocketPath();
// The control socket that belongs to a socket.
inline std::string GetControlPath(const std::string& socketPath) {
    return socketPath + ".ctl";
}
// Creates the default path's directory, for this user only. False: `error` is a line.
bool MakeDefaultDirectory(std::string& error);

// Creates the directory and its parents, for this user only. False if it does not exist then, with the reason in errno.
bool MakeDirectories(const std::string& path);

// The user's state directory, by XDG_STATE_HOME and HOME; a relative path in one is ignored. Empty when there is none.
std::string FindStateDirectory();
// Where the simulated device keeps its files: NORVEX_DEVICE_DIR or, without it, norvex/device in the user's state
// directory or, without one, in the user's directory under /tmp. Empty if the variable is not an absolute path, or that
// directory is another user's: `error` is a line.
std::string FindDeviceDirectory(std::string& error);
// Below the device's directory: exists while the live provider's log is on.
constexpr const char* kProviderMarker = "quarle-provider/data/FCdebug.conf";

} // namespace sim
