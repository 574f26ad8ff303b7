#pragma once

#include <string>
#include <string_view>

namespace host {

// The record of a session in a file. What is written is in the file when the call returns, so that
// a plug-in that crashes, or Ctrl-C, loses nothing. Not locked: its user is.
class TCTranscript {
public:
    TCTranscript() = default;
    ~TCTranscript();
    TCTranscript(const TCTranscript&) = delete;
    TCTranscript& operator=(const TCTranscript&) = delete;

    // Creates the file or empties it. False where that fails, with the reason in errno.
    bool Open(const std::string& file);

    // After a failed write nothing more is written: a record with a hole would be worse than a
    // short one.
    void Write(std::string_view text);

    // 0, or the errno of the write that failed.
    int Error() const { return m_Error; }

private:
    int m_Descriptor = -1;
    int m_Error = 0;
};

} // namespace host
