#pragma once

#include <string>

namespace sim {

// Where daemon and clients meet without being told: norvex.sock in the user's run-time directory
// or, without one, in a directory of the user's own under /tmp.
std::string GetDefaultSocketPath();
// The path in NORVEX_SOCKET or, without it, the default one.
std::string FindSocketPath();
// The control socket that belongs to a socket.
inline std::string GetControlPath(const std::string& socketPath) {
    return socketPath + ".ctl";
}
// Makes the default path's own directory, for its user alone. False: `error` is a line.
bool MakeDefaultDirectory(std::string& error);

} // namespace sim
