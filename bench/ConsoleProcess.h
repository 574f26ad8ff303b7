#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace bench {

// A running console, with pipes as its standard input and output. Ends this program when the console
// ends on its own.
class ConsoleProcess {
public:
    explicit ConsoleProcess(const std::vector<std::string>& words);
    // Kills it if it has not ended.
    ~ConsoleProcess();
    ConsoleProcess(const ConsoleProcess&) = delete;
    ConsoleProcess& operator=(const ConsoleProcess&) = delete;

    void Type(std::string_view words);
    // Reads its output until `text` has appeared `times` more times.
    void Await(std::string_view text, std::size_t times = 1);
    // How often `text` has appeared in the output read by Await.
    std::size_t Count(std::string_view text) const;

    pid_t GetProcess() const { return m_process; }

private:
    pid_t m_process = -1;
    int m_input = -1;
    int m_output = -1;
    std::string m_read;
    std::size_t m_seen = 0;
};

} // namespace bench
