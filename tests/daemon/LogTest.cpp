#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <base/Log.h>
#include <gtest/gtest.h>

namespace {

class LogTest : public testing::Test {
protected:
    LogTest() {
        m_log.SetSink([this](std::string_view tag, std::string_view line) {
            m_lines.push_back(std::string(tag) + "|" + std::string(line.substr(line.find('#'))));
        });
    }

    sim::Log m_log;
    std::vector<std::string> m_lines;
};

TEST_F(LogTest, LinesCarryTagAndNumber) {
    m_log.Write(sim::kOwnTag, "one %d", 1);
    m_log.SetSequence(12);
    m_log.Write("tvvideosink", "two");
    EXPECT_EQ(m_lines, (std::vector<std::string>{"norvex|#0 one 1", "tvvideosink|#12 two"}));
}

TEST_F(LogTest, AStoppedTagWritesNothing) {
    m_log.Write("quarle-daemon", "not yet");
    m_log.SetTag("quarle-daemon", true);
    m_log.Write("quarle-daemon", "now");
    m_log.SetTag("tvvideodec", false);
    m_log.Write("tvvideodec", "no more");
    m_log.Write("unheard-of", "never");
    EXPECT_EQ(m_lines, std::vector<std::string>{"quarle-daemon|#0 now"});
    m_log.ResetTags();
    EXPECT_FALSE(m_log.IsStarted("quarle-daemon"));
    EXPECT_TRUE(m_log.IsStarted("tvvideodec"));
}

TEST_F(LogTest, TheMediaElementsTagsAreStartedFromTheBeginning) {
    for (const char* tag : {"tvvideosink", "tvvideodec", "tvtunerinfosrc", "tvaudiosink", "tvaudiodec", "tvdemuxer",
                            "tvdrmsink", "extaudiosrc", "extvideosrc", "tvfpaparser", "norvex"})
        EXPECT_TRUE(m_log.IsStarted(tag)) << tag;
    for (const char* tag : {"quarle-daemon", "quarle-provider"})
        EXPECT_FALSE(m_log.IsStarted(tag)) << tag;
}

TEST_F(LogTest, ALineStaysALine) {
    m_log.Write(sim::kOwnTag, "%s", "two\nlines\x1b[2J");
    m_log.Write(sim::kOwnTag, "%s", std::string(100000, 'x').c_str());
    ASSERT_EQ(m_lines.size(), 2u);
    EXPECT_EQ(m_lines[0], "norvex|#0 two?lines?[2J");
    EXPECT_LT(m_lines[1].size(), 4096u);
}

TEST_F(LogTest, ALineIsUtf8WithoutControlCharacters) {
    const std::string whole = "\u00a0\u00e9\u07ff\u0800\ud7ff\ue000\uffff\U00010000\U0010ffff";
    m_log.Write(sim::kOwnTag, "%s", whole.c_str());
    EXPECT_EQ(m_lines.back(), "norvex|#0 " + whole);
    // Lone bytes, cut sequences, overlong forms, a surrogate, beyond the last code, a control character of two bytes.
    for (const char* wrong : {"\x80", "\xff", "\xc3", "\xe2\x82", "\xf0\x9f\x98", "\xc0\xaf", "\xe0\x9f\xbf",
                              "\xf0\x8f\xbf\xbf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xc2\x9b"}) {
        m_log.Write(sim::kOwnTag, "a%sb", wrong);
        EXPECT_EQ(m_lines.back(), "norvex|#0 a" + std::string(std::strlen(wrong), '?') + "b");
    }
    // A long line is not cut in the middle of a character.
    std::string many;
    while (many.size() < 4096)
        many += "\u00e9";
    for (const char* before : {"", "x"}) {
        m_log.Write(sim::kOwnTag, "%s%s", before, many.c_str());
        EXPECT_NE(m_lines.back().back(), '\xc3');
    }
}

// A pipe on which the log is written.
class LogPipeTest : public testing::Test {
protected:
    LogPipeTest() {
        char pattern[] = "/tmp/norvex-test-XXXXXX";
        m_directory = mkdtemp(pattern);
        m_path = m_directory + "/log";
        EXPECT_EQ(mkfifo(m_path.c_str(), 0600), 0);
    }
    ~LogPipeTest() override {
        unlink(m_path.c_str());
        rmdir(m_directory.c_str());
    }

    // Until a line is lost; the number of the lines.
    int Fill() {
        const std::uint64_t before = m_log.GetLostCount();
        int count = 0;
        for (; m_log.GetLostCount() == before; ++count)
            m_log.Write(sim::kOwnTag, "line");
        return count;
    }
    // What the pipe holds, and the lines of it.
    std::string Read(int reader) {
        std::string all;
        char bytes[65536];
        for (ssize_t size = 0; (size = read(reader, bytes, sizeof bytes)) > 0;)
            all.append(bytes, static_cast<std::size_t>(size));
        return all;
    }

    sim::Log m_log;
    std::string m_directory;
    std::string m_path;
};

TEST_F(LogPipeTest, NobodyIsWaitedFor) {
    ASSERT_TRUE(m_log.OpenFile(m_path));
    const int lines = Fill();
    for (int count = 0; count < 4; ++count)
        m_log.Write(sim::kOwnTag, "lost");
    EXPECT_EQ(m_log.GetLostCount(), 5u);
    const int reader = open(m_path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    // Whoever comes late finds the first ones, and then how many are missing.
    const std::string first = Read(reader);
    EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), lines - 1);
    m_log.Write(sim::kOwnTag, "goes on");
    std::string next = Read(reader);
    EXPECT_NE(next.find(" norvex: #0 lines lost because they could not be written: 5\n"), std::string::npos) << next;
    EXPECT_TRUE(next.ends_with(" norvex: #0 goes on\n")) << next;
    // Once.
    m_log.Write(sim::kOwnTag, "again");
    next = Read(reader);
    EXPECT_EQ(std::count(next.begin(), next.end(), '\n'), 1);
    EXPECT_EQ(m_log.GetLostCount(), 5u);
    close(reader);
}

TEST_F(LogPipeTest, AReaderMayGoAndAnotherOneCome) {
    signal(SIGPIPE, SIG_IGN);
    int reader = open(m_path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_TRUE(m_log.OpenFile(m_path));
    close(reader);
    m_log.Write(sim::kOwnTag, "lost");
    reader = open(m_path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    m_log.Write(sim::kOwnTag, "goes on");
    const std::string lines = Read(reader);
    EXPECT_NE(lines.find("lines lost because they could not be written: 1\n"), std::string::npos) << lines;
    EXPECT_NE(lines.find("goes on"), std::string::npos) << lines;
    close(reader);
}

TEST(LogFullDiskTest, IsCounted) {
    sim::Log log;
    ASSERT_TRUE(log.OpenFile("/dev/full"));
    for (int count = 0; count < 3; ++count)
        log.Write(sim::kOwnTag, "line");
    EXPECT_EQ(log.GetLostCount(), 3u);
}

} // namespace
