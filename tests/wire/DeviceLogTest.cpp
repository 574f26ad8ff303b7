#include <cstdlib>
#include <fstream>
#include <regex>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <base/DeviceLog.h>
#include <base/LogFile.h>
#include <gtest/gtest.h>

#include "LogWatch.h"

namespace {

class LogFileTest : public testing::Test {
protected:
    LogFileTest() {
        char pattern[] = "/tmp/norvex-test-XXXXXX";
        m_directory = mkdtemp(pattern);
        path = m_directory + "/log";
    }
    ~LogFileTest() override {
        unlink(path.c_str());
        unlink((path + ".1").c_str());
        rmdir(m_directory.c_str());
    }

    static std::string Read(const std::string& file) {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::string path;

private:
    std::string m_directory;
};

} // namespace

TEST(DeviceLog, ALineHasATimeAProcessATagAndAText) {
    const LogWatch log;
    devicelog::Print("tag", "%d bottles", 99);
    const std::vector<std::string> lines = log.GetLines();
    ASSERT_EQ(lines.size(), 1u);
    const std::string end = " " + std::to_string(getpid()) + " tag: 99 bottles";
    ASSERT_GT(lines[0].size(), end.size());
    EXPECT_EQ(lines[0].substr(lines[0].size() - end.size()), end);
    const std::regex stamp(R"((\d{4})-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}\D.*)");
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(lines[0], parts, stamp)) << lines[0];
    EXPECT_GE(std::stoi(parts[1]), 2024);
}

TEST(DeviceLog, AnyTextIsOneLine) {
    const LogWatch log;
    devicelog::Write("tag", "first\nsecond\r\tthird\x7f");
    devicelog::Write("tag", std::string(100000, 'x'));
    const std::vector<std::string> lines = log.GetLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_NE(lines[0].find(": first?second??third?"), std::string::npos);
    EXPECT_LT(lines[1].size(), 4200u);
}

TEST(DeviceLog, LinesOfSeveralThreadsStayWhole) {
    const LogWatch log;
    std::thread other([] {
        for (int i = 0; i < 500; ++i)
            devicelog::Write("other", "ooooooooooooooooo");
    });
    for (int i = 0; i < 500; ++i)
        devicelog::Write("one", "iiiiiiiiiiiiiiiii");
    other.join();
    EXPECT_EQ(log.Count(" one: iiiiiiiiiiiiiiiii"), 500);
    EXPECT_EQ(log.Count(" other: ooooooooooooooooo"), 500);
    EXPECT_EQ(log.GetLines().size(), 1000u);
}

TEST_F(LogFileTest, ItsSizeIsBounded) {
    devicelog::LogFile first(path, 100);
    devicelog::LogFile second(path, 100);
    const std::string line(30, 'a');
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(first.Append(line + "\n"));
        EXPECT_TRUE(second.Append(line + "\n"));
    }
    EXPECT_LE(Read(path).size(), 100u + 31);
    EXPECT_LE(Read(path + ".1").size(), 100u + 2 * 31);
    EXPECT_GE(Read(path + ".1").size(), 100u) << "exchanged by one of the two, not by both";
}

TEST_F(LogFileTest, WhoHoldsItsLockIsNotWaitedFor) {
    devicelog::LogFile file(path, 1);
    EXPECT_TRUE(file.Append("one\n"));
    const int holder = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(holder, LOCK_EX), 0);
    EXPECT_TRUE(file.Append("two\n"));
    EXPECT_EQ(Read(path), "one\ntwo\n");
    close(holder);
    EXPECT_TRUE(file.Append("three\n"));
    EXPECT_EQ(Read(path), "three\n");
}

TEST_F(LogFileTest, OneThatSomebodyRemovesIsMadeAnew) {
    devicelog::LogFile file(path, 100);
    EXPECT_TRUE(file.Append("gone\n"));
    ASSERT_EQ(unlink(path.c_str()), 0);
    EXPECT_TRUE(file.Append("new\n"));
    EXPECT_EQ(Read(path), "new\n");
}

TEST_F(LogFileTest, ItIsForItsUserAlone) {
    devicelog::LogFile file(path, 100);
    ASSERT_TRUE(file.Append("line\n"));
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(LogFileTest, AFileThatCannotBeOpenedIsNobodysFailure) {
    devicelog::LogFile file("/nowhere/at/all", 100);
    EXPECT_FALSE(file.Append("line\n"));
    devicelog::LogFile none("", 100);
    EXPECT_FALSE(none.Append("line\n"));
}
