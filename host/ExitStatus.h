#pragma once

namespace host {

// What the process ends with; scripts and CI jobs judge a run by it.
enum EExitStatus : int {
    EXIT_DONE = 0, // the entry returned, or the words were used up
    EXIT_UNAVAILABLE =
        1,           // plug-in, entry, script file, transcript or standard output cannot be used
    EXIT_USAGE = 2,  // the command line or the script is badly written
    EXIT_MISSED = 3, // an expected text did not come
};

} // namespace host
