#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace bench {

// A console with pipes at its ends, to talk with while it runs. Ends this program when the console
// ends on its own.
class TCConsoleProcess {
public:
    explicit TCConsoleProcess(const std::vector<std::string>& words);
    // Kills it where it has not ended.
    ~TCConsoleProcess();
    TCConsoleProcess(const TCConsoleProcess&) = delete;
    TCConsoleProcess& operator=(const TCConsoleProcess&) = delete;

    void Type(std::string_view words);
    // Reads its output until `text` has come `times` times more.
    void Await(std::string_view text, std::size_t times = 1);
    // How often `text` has been in the output that Await has read, the text's own waits aside.
    std::size_t Count(std::string_view text) const;

    pid_t Process() const { return m_Process; }

private:
    pid_t m_Process = -1;
    int m_Input = -1;
    int m_Output = -1;
    std::string m_Read;
    std::size_t m_Seen = 0;
};

} // namespace bench
