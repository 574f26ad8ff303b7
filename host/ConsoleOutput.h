#pragma once

#include <mutex>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

namespace host {

class OutputWatch;

// A file that the run uses, and what it is called in messages.
struct UsedFile {
    const char* name;
    struct stat status;
};

// The record of a run in a file. Once it is open, each write is complete when the call returns, so that a
// crash of the plug-in, or Ctrl-C, loses nothing. Not locked: its user holds a lock.
class Transcript {
public:
    Transcript() = default;
    ~Transcript();
    Transcript(const Transcript&) = delete;
    Transcript& operator=(const Transcript&) = delete;

    // Creates or truncates the file, and writes what came before. False on failure, with the `reason`; a
    // file in use is left as it is.
    bool Open(const std::string& file, const std::vector<UsedFile>& inUse, std::string& reason);

    // After a failed write nothing more is written: a short record is better than one with a gap.
    void Write(std::string_view text);

    // 0, or the errno of the write that failed.
    int Error() const { return m_error; }

private:
    int m_descriptor = -1;
    bool m_isPipe = false;
    int m_error = 0;
    std::string m_early; // written before the file is open
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
