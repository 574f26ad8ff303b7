#include "Session.h"

#include "ExitStatus.h"
#include "GivenWords.h"
#include "InputBuffer.h"
#include "OutputTee.h"
#include "Plugin.h"
#include "ProcessReports.h"
#include "ScriptInput.h"
#include "ScriptRun.h"
#include "StandardInput.h"
#include "TerminalModes.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <sstream>
#include <system_error>

#include <unistd.h>

namespace host {

namespace {

void Complain(const std::string& line) {
    // One insertion: the script's thread complains too.
    std::cerr << "zarn-debughost: " + line + '\n';
}

// Another buffer behind a standard stream, for a time.
class TCStreamBuffer {
public:
    TCStreamBuffer(std::ios& stream, std::streambuf& buffer)
        : m_Stream(stream), m_Before(stream.rdbuf(&buffer)) {}
    ~TCStreamBuffer() { m_Stream.rdbuf(m_Before); }
    TCStreamBuffer(const TCStreamBuffer&) = delete;
    TCStreamBuffer& operator=(const TCStreamBuffer&) = delete;

private:
    std::ios& m_Stream;
    std::streambuf* m_Before;
};

std::string InSeconds(std::chrono::milliseconds time) {
    std::ostringstream text;
    text << static_cast<double>(time.count()) / 1000;
    return text.str();
}

} // namespace

int TCSession::Run() {
    if (const std::optional<int> status = ReadScript()) {
        return *status;
    }
    if (const std::optional<int> status = OpenTranscript()) {
        return *status;
    }
    KeepTerminalModes();

    if (m_CommandLine.m_ScriptFile) {
        TCScriptInput words;
        return RunConsole(words, &words);
    }
    if (m_CommandLine.m_Words) {
        TCGivenWords words(*m_CommandLine.m_Words);
        return RunConsole(words, nullptr);
    }
    TCStandardInput words(STDIN_FILENO);
    return RunConsole(words, nullptr);
}

std::optional<int> TCSession::ReadScript() {
    if (!m_CommandLine.m_ScriptFile) {
        return std::nullopt;
    }
    const std::string& name = *m_CommandLine.m_ScriptFile;

    std::ifstream file(name, std::ios::binary);
    std::string text;
    char block[4096];
    do {
        file.read(block, sizeof block);
        text.append(block, static_cast<std::size_t>(file.gcount()));
    } while (file);
    if (!file.is_open() || file.bad()) {
        Complain("cannot read the script " + name + ": " + std::generic_category().message(errno));
        return EXIT_UNAVAILABLE;
    }

    TSScriptError error;
    std::optional<std::vector<TSStep>> steps = ParseScript(text, error);
    if (!steps) {
        Complain(name + ":" + std::to_string(error.m_LineNumber) + ": " + error.m_Reason);
        return EXIT_USAGE;
    }
    m_Script = std::move(*steps);
    return std::nullopt;
}

std::optional<int> TCSession::OpenTranscript() {
    if (!m_CommandLine.m_TranscriptFile || m_Transcript.Open(*m_CommandLine.m_TranscriptFile)) {
        return std::nullopt;
    }
    Complain("cannot write the transcript " + *m_CommandLine.m_TranscriptFile + ": " +
             std::generic_category().message(errno));
    return EXIT_UNAVAILABLE;
}

int TCSession::RunConsole(IWordSource& words, TCScriptInput* script) {
    const bool recorded = m_CommandLine.m_TranscriptFile.has_value();

    // Where nobody listens in, std::cout stays as it is: 100,000 words a second pass here.
    TCOutputTee tee(*std::cout.rdbuf(), recorded ? &m_Transcript : nullptr,
                    script ? &m_Watch : nullptr);
    std::optional<TCStreamBuffer> output;
    if (recorded || script) {
        output.emplace(std::cout, tee);
    }

    std::optional<TCScriptRun> run;
    if (script) {
        run.emplace(m_Script, *script, m_Watch,
                    [this](const TSStep& step, const TSExpectStep& expect) { Miss(step, expect); });
    }

    TCInputBuffer::TSHooks hooks;
    hooks.m_BeforeWait = [this] {
        std::cout.flush();
        if (std::ferror(stdout)) {
            EndProcess(EXIT_UNAVAILABLE); // nobody sees what the console prints
        }
    };
    hooks.m_AtEnd = [this, &run] {
        if (run) {
            run->Finish();
        }
        EndProcess(EXIT_DONE);
    };
    if (recorded) {
        hooks.m_Typed = [&tee](std::string_view text) { tee.RecordTyped(text); };
    }
    TCInputBuffer buffer(words, std::move(hooks));
    const TCStreamBuffer input(std::cin, buffer);

    TCPlugin plugin;
    std::string reason;
    if (!plugin.Load(m_CommandLine.m_Plugin, m_CommandLine.m_Entry, reason)) {
        Complain(reason);
        return EXIT_UNAVAILABLE;
    }

    try {
        if (run) {
            run->Start();
        }
        plugin.Enter();
    } catch (const std::exception& failure) {
        // A thread that cannot be had, memory: whatever of the console still runs ends with it.
        Complain(std::string("the console ended by an exception: ") + failure.what());
        EndProcess(EXIT_UNAVAILABLE);
    }
    plugin.Close();
    if (run) {
        run->Finish();
    }
    return Conclude(EXIT_DONE);
}

void TCSession::Miss(const TSStep& step, const TSExpectStep& expect) {
    Complain(*m_CommandLine.m_ScriptFile + ":" + std::to_string(step.m_LineNumber) +
             ": the expected text did not come within " + InSeconds(expect.m_Limit) +
             " s: " + Quoted(expect.m_Text));
    EndProcess(EXIT_MISSED);
}

void TCSession::EndProcess(int status) {
    m_Ending.lock();
    status = Conclude(status);
    WriteProcessReports();
    ::_exit(status);
}

int TCSession::Conclude(int status) {
    std::cout.flush();
    RestoreTerminalModes();
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        Complain("cannot write to standard output");
        status = status == EXIT_DONE ? EXIT_UNAVAILABLE : status;
    }
    if (m_Transcript.Error() != 0) {
        Complain("cannot write the transcript " + *m_CommandLine.m_TranscriptFile + ": " +
                 std::generic_category().message(m_Transcript.Error()));
        status = status == EXIT_DONE ? EXIT_UNAVAILABLE : status;
    }
    return status;
}

} // namespace host
