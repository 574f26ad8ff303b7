#include "ConsoleRun.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <system_error>

#include <unistd.h>

#include "ConsoleInput.h"
#include "Plugin.h"
#include "Process.h"

namespace host {

namespace {

void Report(const std::string& line) {
    // One insertion: the script's thread reports too.
    std::cerr << "zarn-debughost: " + line + '\n';
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
    if (const std::optional<ExitStatus> status = OpenTranscript()) {
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

    std::ifstream file(name, std::ios::binary);
    std::string text;
    char block[4096];
    do {
        file.read(block, sizeof block);
        text.append(block, static_cast<std::size_t>(file.gcount()));
    } while (file);
    if (!file.is_open() || file.bad()) {
        Report("cannot read the script " + name + ": " + std::generic_category().message(errno));
        return ExitStatus::Unavailable;
    }

    ScriptError error;
    std::optional<std::vector<Step>> steps = ParseScript(text, error);
    if (!steps) {
        Report(name + ":" + std::to_string(error.lineNumber) + ": " + error.reason);
        return ExitStatus::Usage;
    }
    m_script = std::move(*steps);
    return std::nullopt;
}

std::optional<ExitStatus> ConsoleRun::OpenTranscript() {
    if (!m_commandLine.transcriptFile || m_transcript.Open(*m_commandLine.transcriptFile)) {
        return std::nullopt;
    }
    Report("cannot write the transcript " + *m_commandLine.transcriptFile + ": " +
           std::generic_category().message(errno));
    return ExitStatus::Unavailable;
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
    hooks.atEnd = [this, &run] {
        if (run) {
            run->Finish();
        }
        EndProcess(ExitStatus::Done);
    };
    if (recorded) {
        hooks.typed = [&tee](std::string_view text) { tee.RecordTyped(text); };
    }
    InputBuffer buffer(source, std::move(hooks));
    const BufferReplacement input(std::cin, buffer);

    Plugin plugin;
    std::string reason;
    if (!plugin.Load(m_commandLine.plugin, m_commandLine.entry, reason)) {
        Report(reason);
        return ExitStatus::Unavailable;
    }

    try {
        if (run) {
            run->Start();
        }
        plugin.Enter();
    } catch (const std::exception& failure) {
        // No thread or no memory: whatever of the console still runs ends with the process.
        Report(std::string("the console threw an exception: ") + failure.what());
        EndProcess(ExitStatus::Unavailable);
    }
    plugin.Close();
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

ExitStatus ConsoleRun::Conclude(ExitStatus status) {
    std::cout.flush();
    RestoreTerminalModes();
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        Report("cannot write to standard output");
        status = status == ExitStatus::Done ? ExitStatus::Unavailable : status;
    }
    if (m_transcript.Error() != 0) {
        Report("cannot write the transcript " + *m_commandLine.transcriptFile + ": " +
               std::generic_category().message(m_transcript.Error()));
        status = status == ExitStatus::Done ? ExitStatus::Unavailable : status;
    }
    return status;
}

} // namespace host
