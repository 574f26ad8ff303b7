#include "CommandLine.h"

#include <gtest/gtest.h>

namespace {

struct TSRead {
    std::optional<int> m_Status;
    host::TSCommandLine m_CommandLine;
    std::string m_Error;
    std::string m_Output;
};

TSRead Read(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "zarn-debughost");
    TSRead read;
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    read.m_Status = host::ReadCommandLine(static_cast<int>(arguments.size()), arguments.data(),
                                          read.m_CommandLine);
    read.m_Output = testing::internal::GetCapturedStdout();
    read.m_Error = testing::internal::GetCapturedStderr();
    return read;
}

bool IsOneLine(const std::string& text) {
    return text.size() > 1 && text.find('\n') == text.size() - 1;
}

TEST(CommandLine, WithoutArgumentsTheDefaultsHold) {
    const TSRead read = Read({});
    EXPECT_FALSE(read.m_Status);
    EXPECT_EQ(read.m_CommandLine.m_Plugin, "");
    EXPECT_EQ(read.m_CommandLine.m_Entry, "zarn_startmaindebug");
    EXPECT_FALSE(read.m_CommandLine.m_Words);
    EXPECT_FALSE(read.m_CommandLine.m_ScriptFile);
    EXPECT_FALSE(read.m_CommandLine.m_TranscriptFile);
}

TEST(CommandLine, EveryOptionIsTaken) {
    const TSRead read =
        Read({"./plugin.so", "--entry", "other", "--script", "s", "--transcript", "t"});
    EXPECT_FALSE(read.m_Status);
    EXPECT_EQ(read.m_CommandLine.m_Plugin, "./plugin.so");
    EXPECT_EQ(read.m_CommandLine.m_Entry, "other");
    EXPECT_EQ(read.m_CommandLine.m_ScriptFile, "s");
    EXPECT_EQ(read.m_CommandLine.m_TranscriptFile, "t");
}

TEST(CommandLine, WordsMayBeEmptyOrNegativeNumbers) {
    EXPECT_EQ(Read({"-c", ""}).m_CommandLine.m_Words, "");
    EXPECT_EQ(Read({"-c", "-1 99"}).m_CommandLine.m_Words, "-1 99");
}

TEST(CommandLine, ABadOneIsOneLineAndStatus2) {
    const std::vector<std::vector<const char*>> bad = {
        {"--bogus"}, {"-c"}, {"one.so", "two.so"}, {"-c", "1", "--script", "s"}, {"--entry"}};
    for (const auto& arguments : bad) {
        const TSRead read = Read(arguments);
        EXPECT_EQ(read.m_Status, 2) << arguments.front();
        EXPECT_TRUE(IsOneLine(read.m_Error)) << read.m_Error;
        EXPECT_EQ(read.m_Output, "");
    }
}

TEST(CommandLine, HelpNamesEveryOptionAndIsStatus0) {
    const TSRead read = Read({"--help"});
    EXPECT_EQ(read.m_Status, 0);
    EXPECT_EQ(read.m_Error, "");
    for (const char* word : {"PLUGIN", "--entry", "-c", "--script", "--transcript", "expect"}) {
        EXPECT_NE(read.m_Output.find(word), std::string::npos) << word;
    }
}

} // namespace
