#include "ConsoleRun.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ConsoleInput.h"
#include "Plugin.h"
#include "Process.h"
#include "Report.h"

namespace host {

namespace {

ConsoleRun* running = nullptr; // for the handler of exceptions that nobody catches

// More than any script that is written, or generated, for a console.
constexpr std::size_t kLongestScript = std::size_t{16} << 20;

std::string Reason(int error) {
    return std::generic_category().message(error);
}

// The whole file, up to `limit` bytes and one more. 0, or the errno of what failed.
int ReadFile(const std::string& name, std::size_t limit, std::string& text, struct stat& status) {
    const int file = ::open(name.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC);
    if (file == -1) {
        return errno;
    }
    int error = ::fstat(file, &status) == 0 ? 0 : errno;
    char block[65536];
    for (ssize_t got = 1; error == 0 && got != 0 && text.size() <= limit;) {
        got = ::read(file, block, sizeof block);
        if (got > 0) {
            text.append(block, static_cast<std::size_t>(got));
        } else if (got < 0 && errno != EINTR) {
            error = errno;
        }
    }
    ::close(file);
    return error;
}

// Replaces the buffer of a standard stream for its lifetime.
class BufferReplacement {
public:
    BufferReplacement(std::ios& stream, std::streambuf& buffer) : m_stream(stream), m_before(stream.rdbuf(&buffer)) {}
    ~BufferReplacement() { m_stream.rdbuf(m_before); }
    BufferReplacement(const BufferReplacement&) = delete;
    BufferReplacement& operator=(const BufferReplacement&) = delete;

private:
    std::ios& m_stream;
    std::streambuf* m_before;
};

std::string InSeconds(std::chrono::milliseconds time) {
    std::ostringstream text;
    text << static_cast<double>(time.count()) / 1000;
    return text.str();
}

} // namespace

ExitStatus ConsoleRun::Run() {
    if (const std::optional<ExitStatus> status = ReadScript()) {
        return *status;
    }
    SaveTerminalModes();

    if (m_commandLine.scriptFile) {
        ScriptInput input;
        return RunConsole(input, &input);
    }
    if (m_commandLine.words) {
        TextInput input(*m_commandLine.words);
        return RunConsole(input, nullptr);
    }
    DescriptorInput input(STDIN_FILENO);
    return RunConsole(input, nullptr);
}

std::optional<ExitStatus> ConsoleRun::ReadScript() {
    if (!m_commandLine.scriptFile) {
        return std::nullopt;
    }
    const std::string& name = *m_commandLine.scriptFile;

    std::string text;
    UsedFile script{"the script", {}};
    if (const int error = ReadFile(name, kLongestScript, text, script.status); error != 0) {
        Report("cannot read the script " + name + ": " + Reason(error));
        return ExitStatus::Unavailable;
    }
    if (text.size() > kLongestScript) {
        Report("the script " + name + " is too long: expected at most 16 MiB");
        return ExitStatus::Unavailable;
    }
    m_filesInUse.push_back(script);

    ScriptError error;
    std::optional<std::vector<Step>> steps = ParseScript(text, error);
    if (!steps) {
        Report(name + ":" + std::to_string(error.lineNumber) + ": " + error.reason);
        return ExitStatus::Usage;
    }
    m_script = std::move(*steps);
    return std::nullopt;
}

bool ConsoleRun::OpenTranscript(const Plugin& plugin) {
    UsedFile input{"standard input", {}};
    UsedFile output{"standard output", {}};
    UsedFile library{"the plug-in", {}};
    if (::fstat(STDIN_FILENO, &input.status) == 0) {
        m_filesInUse.push_back(input);
    }
    if (::fstat(STDOUT_FILENO, &output.status) == 0) {
        m_filesInUse.push_back(output);
    }
    if (::stat(plugin.GetFile().c_str(), &library.status) == 0) {
        m_filesInUse.push_back(library);
    }
    std::string reason;
    if (m_transcript.Open(*m_commandLine.transcriptFile, m_filesInUse, reason)) {
        return true;
    }
    Report("cannot write the transcript " + *m_commandLine.transcriptFile + ": " + reason);
    return false;
}

ExitStatus ConsoleRun::RunConsole(InputSource& source, ScriptInput* script) {
    const bool recorded = m_commandLine.transcriptFile.has_value();

    // Without a transcript or script std::cout stays as it is: 100,000 words a second pass here.
    OutputTee tee(*std::cout.rdbuf(), recorded ? &m_transcript : nullptr, script ? &m_watch : nullptr);
    std::optional<BufferReplacement> output;
    if (recorded || script) {
        output.emplace(std::cout, tee);
    }

    std::optional<ScriptRun> run;
    if (script) {
        run.emplace(m_script, *script, m_watch,
                    [this](const Step& step, const ExpectStep& expect) { ReportMissed(step, expect); });
    }

    InputBuffer::Hooks hooks;
    hooks.beforeWait = [this] {
        std::cout.flush();
        if (std::ferror(stdout)) {
            EndProcess(ExitStatus::Unavailable); // nobody sees the output
        }
    };
    hooks.atEnd = [this, &run, &source] {
        if (run) {
            run->Finish();
        }
        if (source.Error() != 0) {
            Report("cannot read standard input: " + Reason(source.Error()));
        }
        EndProcess(source.Error() == 0 ? ExitStatus::Done : ExitStatus::Unavailable);
    };
    if (recorded) {
        hooks.typed = [&tee](std::string_view text) { tee.RecordTyped(text); };
    }
    InputBuffer buffer(source, std::move(hooks));
    const BufferReplacement input(std::cin, buffer);

    // Also for exceptions of the console's other threads, and while it is loaded and closed.
    running = this;
    const std::terminate_handler handler = std::set_terminate([] { running->EndByException(); });

    Plugin plugin;
    try {
        std::string reason;
        if (!plugin.Load(m_commandLine.plugin, m_commandLine.entry, reason)) {
            Report(reason);
            return ExitStatus::Unavailable;
        }
        if (recorded && !OpenTranscript(plugin)) {
            EndProcess(ExitStatus::Unavailable);
        }
        if (run) {
            run->Start();
        }
        plugin.Enter();
    } catch (...) {
        // Whatever of the console still runs ends with the process.
        EndByException();
    }
    plugin.Close();
    std::set_terminate(handler);
    if (run) {
        run->Finish();
    }
    return Conclude(ExitStatus::Done);
}

void ConsoleRun::ReportMissed(const Step& step, const ExpectStep& expect) {
    Report(*m_commandLine.scriptFile + ":" + std::to_string(step.lineNumber) +
           ": the expected text did not come within " + InSeconds(expect.limit) + " s: " + Quoted(expect.text));
    EndProcess(ExitStatus::Missed);
}

void ConsoleRun::EndProcess(ExitStatus status) {
    m_ending.lock();
    status = Conclude(status);
    WriteProcessReports();
    ::_exit(static_cast<int>(status));
}

void ConsoleRun::EndByException() {
    const std::exception_ptr thrown = std::current_exception();
    try {
        if (thrown) {
            std::rethrow_exception(thrown);
        }
        Report("the console called std::terminate");
    } catch (const std::exception& failure) {
        Report(std::string("the console threw an exception: ") + failure.what());
    } catch (...) {
        Report("the console threw an exception that is no std::exception");
    }
    EndProcess(ExitStatus::Unavailable);
}

ExitStatus ConsoleRun::Conclude(ExitStatus status) {
    std::cout.flush();
    RestoreTerminalModes();
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        Report("cannot write to standard output");
        status = status == ExitStatus::Done ? ExitStatus::Unavailable : status;
    }
    if (m_transcript.Error() != 0) {
        Report("cannot write the transcript " + *m_commandLine.transcriptFile + ": " + Reason(m_transcript.Error()));
        status = status == ExitStatus::Done ? ExitStatus::Unavailable : status;
    }
    return status;
}

} // namespace host
