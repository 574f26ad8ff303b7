#include <string>
#include <vector>

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

} // namespace
