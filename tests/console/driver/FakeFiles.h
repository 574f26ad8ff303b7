#pragma once

#include <string>

// The marker file's calls, on the time line: "stat(path)", "fopen(path, w)", "fclose",
// "remove(path)". They reach the real files; a path is written without the directory that is
// watched, and calls for other paths are not noted.
namespace FakeFiles {

// Watches `directory` from now on; an empty one ends that.
void Watch(const std::string& directory);
// From now on opening for writing and removing fail below it, as on a file system that is mounted
// read-only. Ends with the watch.
void MountReadOnly();

} // namespace FakeFiles
