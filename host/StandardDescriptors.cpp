#include "StandardDescriptors.h"

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <linux/close_range.h>
#include <unistd.h>

namespace host {

void PrepareStandardDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free number is taken: this one.
            static_cast<void>(::open("/dev/null", O_RDWR));
        }
    }

    // What the caller's shell or build tool has left open is closed in the plug-in's children too.
    // A kernel without this call (before 5.11) leaves such descriptors as they are.
    static_cast<void>(::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC));

    // A caller may have it ignored, and a console that prints into nothing for ever is what it is
    // there to prevent.
    static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
}

} // namespace host
