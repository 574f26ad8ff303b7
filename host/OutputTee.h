#pragma once

#include <mutex>
#include <streambuf>
#include <string_view>

namespace host {

class TCOutputWatch;
class TCTranscript;

// The buffer behind std::cout where somebody listens in: passes everything on to the buffer that
// was there before, and to the transcript and the watch. The console's thread and its signal thread
// both print, so that each insertion is one step under a lock: it arrives unbroken and in the same
// order everywhere. It buffers nothing itself.
class TCOutputTee : public std::streambuf {
public:
    // Nothing is owned; transcript and watch may be null.
    TCOutputTee(std::streambuf& output, TCTranscript* transcript, TCOutputWatch* watch);

    // Records what the user typed, which is not printed.
    void RecordTyped(std::string_view text);

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;

private:
    std::mutex m_Mutex;
    std::streambuf& m_Output;
    TCTranscript* m_Transcript;
    TCOutputWatch* m_Watch;
};

} // namespace host
