#include "CommandLine.h"

#include <gtest/gtest.h>

namespace {

struct ReadResult {
    std::optional<host::ExitStatus> status;
    host::CommandLine commandLine;
    std::string error;
    std::string output;
};

ReadResult Read(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "zarn-debughost");
    ReadResult read;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    read.status = host::ReadCommandLine(static_cast<int>(arguments.size()), arguments.data(), read.commandLine);
    read.output = testing::internal::GetCapturedStdout();
    read.error = testing::internal::GetCapturedStderr();
    return read;
}

bool IsOneLine(const std::string& text) {
    return text.size() > 1 && text.find('\n') == text.size() - 1;
}

TEST(CommandLine, WithoutArgumentsTheDefaultsHold) {
    const ReadResult read = Read({});
    EXPECT_FALSE(read.status);
    EXPECT_EQ(read.commandLine.plugin, "");
    EXPECT_EQ(read.commandLine.entry, "zarn_startmaindebug");
    EXPECT_FALSE(read.commandLine.words);
    EXPECT_FALSE(read.commandLine.scriptFile);
    EXPECT_FALSE(read.commandLine.transcriptFile);
}

TEST(CommandLine, EveryOptionIsTaken) {
    const ReadResult read = Read({"./plugin.so", "--entry", "other", "--script", "s", "--transcript", "t"});
    EXPECT_FALSE(read.status);
    EXPECT_EQ(read.commandLine.plugin, "./plugin.so");
    EXPECT_EQ(read.commandLine.entry, "other");
    EXPECT_EQ(read.commandLine.scriptFile, "s");
    EXPECT_EQ(read.commandLine.transcriptFile, "t");
}

TEST(CommandLine, WordsMayBeEmptyOrNegativeNumbers) {
    EXPECT_EQ(Read({"-c", ""}).commandLine.words, "");
    EXPECT_EQ(Read({"-c", "-1 99"}).commandLine.words, "-1 99");
}

TEST(CommandLine, ABadOneIsOneLineAndStatus2) {
    const std::vector<std::vector<const char*>> bad = {
        {"--bogus"}, {"-c"}, {"one.so", "two.so"}, {"-c", "1", "--script", "s"}, {"--entry"}};
    for (const auto& arguments : bad) {
        const ReadResult read = Read(arguments);
        EXPECT_EQ(read.status, host::ExitStatus::Usage) << arguments.front();
        EXPECT_TRUE(IsOneLine(read.error)) << read.error;
        EXPECT_EQ(read.output, "");
    }
}

TEST(CommandLine, HelpNamesEveryOptionAndIsStatus0) {
    const ReadResult read = Read({"--help"});
    EXPECT_EQ(read.status, host::ExitStatus::Done);
    EXPECT_EQ(read.error, "");
    for (const char* word : {"PLUGIN", "--entry", "-c", "--script", "--transcript", "expect"}) {
        EXPECT_NE(read.output.find(word), std::string::npos) << word;
    }
}

} // namespace
