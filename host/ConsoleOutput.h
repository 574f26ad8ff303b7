#pragma once

#include <mutex>
#include <streambuf>
#include <string>
#include <string_view>

namespace host {

class OutputWatch;

// The record of a run in a file. Each write is complete when the call returns, so that a crash of
// the plug-in, or Ctrl-C, loses nothing. Not locked: its user holds a lock.
class Transcript {
public:
    Transcript() = default;
    ~Transcript();
    Transcript(const Transcript&) = delete;
    Transcript& operator=(const Transcript&) = delete;

    // Creates or truncates the file. False on failure, with the reason in errno.
    bool Open(const std::string& file);

    // After a failed write nothing more is written: a short record is better than one with a gap.
    void Write(std::string_view text);

    // 0, or the errno of the write that failed.
    int Error() const { return m_error; }

private:
    int m_descriptor = -1;
    int m_error = 0;
};

// The buffer behind std::cout when there is a transcript or a script: passes everything on to the
// previous buffer, the transcript and the watch. The console's thread and its signal thread both
// print, so each insertion is one step under a lock: it arrives unbroken and in the same order
// everywhere. Not buffered itself.
class OutputTee : public std::streambuf {
public:
    // Nothing is owned; transcript and watch may be null.
    OutputTee(std::streambuf& output, Transcript* transcript, OutputWatch* watch);

    // Records what the user typed, which is not printed.
    void RecordTyped(std::string_view text);

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;

private:
    std::mutex m_mutex;
    std::streambuf& m_output;
    Transcript* m_transcript;
    OutputWatch* m_watch;
};

} // namespace host
