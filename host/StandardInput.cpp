#include "StandardInput.h"

#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace host {

std::string_view TCStandardInput::Next() {
    for (;;) {
        const ssize_t got = ::read(m_Descriptor, m_Block.data(), m_Block.size());
        if (got > 0) {
            return {m_Block.data(), static_cast<std::size_t>(got)};
        }
        if (got == 0) {
            return {};
        }
        if (errno == EAGAIN) {
            // Another program has left the shared descriptor in non-blocking mode.
            pollfd waiting{m_Descriptor, POLLIN, 0};
            static_cast<void>(::poll(&waiting, 1, -1));
        } else if (errno != EINTR) {
            return {};
        }
    }
}

} // namespace host
