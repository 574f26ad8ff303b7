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

} // namespace sim
