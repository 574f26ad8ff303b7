#include "LineUpText.h"

#include <gtest/gtest.h>

#include "BuiltInLineUp.h"

namespace {

// Records the content of a text, in order.
class Collector : public sim::LineUpSink {
public:
    std::string AddService(const sim::ServiceRecord& service) override {
        services.push_back(service);
        return {};
    }
    std::string AddProgramme(std::uint64_t service, const sim::ProgrammeRecord& programme) override {
        programmes.emplace_back(service, programme);
        return {};
    }

    std::vector<sim::ServiceRecord> services;
    std::vector<std::pair<std::uint64_t, sim::ProgrammeRecord>> programmes;
};

std::string ErrorOf(const std::string& text) {
    Collector collector;
    std::string error;
    const bool read = sim::ReadLineUp(text, "my.lineup", collector, error);
    EXPECT_EQ(read, error.empty());
    return error;
}

// The error of a line that is the third, within a service.
std::string ErrorOfLine(const std::string& line) {
    return ErrorOf("transponder air 474000\nservice 0x1 1 \"One\"\n" + line + "\n");
}

TEST(LineUpText, ReadsAllOfAService) {
    Collector read;
    std::string error;
    ASSERT_TRUE(sim::ReadLineUp("# a comment\r\n\n"
                                "transponder satellite 11347000 # kHz\n"
                                "\tservice 0xfffffffffffffffe 7-65535 \"A \\\"b\\\" \\\\ # ü\" "
                                "profile=2 hidden unlisted captions barker\n"
                                "  programme 23:30 60 \"夜\"\n"
                                "streamed cable\n"
                                "service 0x2 0 \"\"\n"
                                "programme 00:00 1440",
                                "x", read, error))
        << error;
    ASSERT_EQ(read.services.size(), 2u);
    EXPECT_EQ(read.services[0], (sim::ServiceRecord{.id = 0xfffffffffffffffe,
                                                    .antenna = 2,
                                                    .frequency = 11347000,
                                                    .major = 7,
                                                    .minor = 65535,
                                                    .profile = 2,
                                                    .listed = false,
                                                    .hidden = true,
                                                    .captions = true,
                                                    .barker = true,
                                                    .name = "A \"b\" \\ # ü"}));
    EXPECT_EQ(read.services[0].GetChannelType(), 3);
    EXPECT_EQ(read.services[1], (sim::ServiceRecord{.id = 2, .antenna = 1, .name = ""}));
    EXPECT_EQ(read.services[1].GetChannelType(), 9);
    ASSERT_EQ(read.programmes.size(), 2u);
    EXPECT_EQ(read.programmes[0].second, (sim::ProgrammeRecord{.start = 84600, .duration = 3600, .title = "夜"}));
    EXPECT_EQ(read.programmes[1], std::pair(std::uint64_t{2}, (sim::ProgrammeRecord{0, 86400, std::nullopt})));
}

TEST(LineUpText, TellsFileLineAndWhatWasExpected) {
    const std::pair<const char*, const char*> kLines[] = {
        {"channel 7", "transponder, streamed, service or programme, found \"channel\""},
        {"transponder", "air, cable or satellite, found the end of the line"},
        {"transponder sky 1", "air, cable or satellite, found \"sky\""},
        {"transponder air", "a frequency in kHz above 0, found the end of the line"},
        {"transponder air 0", "a frequency in kHz above 0, found \"0\""},
        {"transponder air 1 2", "the end of the line, found \"2\""},
        {"streamed air/5", "air, cable or satellite, found \"air/5\""},
        {"streamed air 5", "the end of the line, found \"5\""},
        {"service 7 7 \"A\"", "a service id from 0x0 to 0xfffffffffffffffe, found \"7\""},
        {"service 0xffffffffffffffff 7 \"A\"",
         "a service id from 0x0 to 0xfffffffffffffffe, found \"0xffffffffffffffff\""},
        {"service 0x10000000000000000 7 \"A\"",
         "a service id from 0x0 to 0xfffffffffffffffe, found \"0x10000000000000000\""},
        {"service 0x7 65536 \"A\"", "a channel number, MAJOR or MAJOR-MINOR, each 0 to 65535, found \"65536\""},
        {"service 0x7 7- \"A\"", "a channel number, MAJOR or MAJOR-MINOR, each 0 to 65535, found \"7-\""},
        {"service 0x7 -7 \"A\"", "a channel number, MAJOR or MAJOR-MINOR, each 0 to 65535, found \"-7\""},
        {"service 0x7 7 A", "a name in \"\" of at most 255 bytes, found \"A\""},
        {"service 0x7 7", "a name in \"\" of at most 255 bytes, found the end of the line"},
        {"service 0x7 7 \"A\" secret", "hidden, unlisted, captions, barker or profile=0 to 32767, found \"secret\""},
        {"service 0x7 7 \"A\" profile=32768",
         "hidden, unlisted, captions, barker or profile=0 to 32767, found \"profile=32768\""},
        {"service 0x7 7 \"A", "a closing \" before the end of the line"},
        {"service 0x7 7 \"A\"hidden", "a blank after \"A\""},
        {"service 0x7 7 \"\\n\"", "\\\" or \\\\ in a text"},
        {"service 0x7 7 \"\t\"", "a text without control characters"},
        {"service 0x7 7 \"\xff\"", "UTF-8"},
        {"programme 24:00 5", "a time of day, 00:00 to 23:59, found \"24:00\""},
        {"programme 9:00 5", "a time of day, 00:00 to 23:59, found \"9:00\""},
        {"programme 09:00 0", "a duration of 1 to 1440 minutes, found \"0\""},
        {"programme 09:00 1441", "a duration of 1 to 1440 minutes, found \"1441\""},
        {"programme 09:00 5 Title", "a title in \"\" of at most 255 bytes, found \"Title\""},
        {"programme 09:00 5 \"Title\" 2", "the end of the line, found \"2\""},
    };
    for (const auto& [line, expected] : kLines)
        EXPECT_EQ(ErrorOfLine(line), std::string("my.lineup:3: expected ") + expected);
    EXPECT_EQ(ErrorOfLine("service 0x7 7 \"" + std::string(255, 'x') + "\""), "");
    EXPECT_NE(ErrorOfLine("service 0x7 7 \"" + std::string(256, 'x') + "\""), "");
    EXPECT_EQ(ErrorOf("service 0x1 1 \"One\""),
              "my.lineup:1: expected a transponder or streamed line before the first service");
    EXPECT_EQ(ErrorOfLine("streamed air\nprogramme 09:00 5"),
              "my.lineup:4: expected a service line before its programmes");
}

TEST(LineUpText, TakesProgrammesInOrderOnly) {
    const std::string first = "programme 20:00 60\n";
    EXPECT_EQ(ErrorOfLine(first + "programme 21:00 60"), "");
    EXPECT_EQ(ErrorOfLine(first + "programme 20:59 60"),
              "my.lineup:4: expected a start at or after 21:00, when the previous programme ends, "
              "found \"20:59\"");
    EXPECT_EQ(ErrorOfLine(first + "programme 23:00 1260"), "");
    EXPECT_EQ(ErrorOfLine(first + "programme 23:00 1261"),
              "my.lineup:4: expected an end before 20:00 of the next day, when the first "
              "programme begins, found \"1261\"");
    // Another service starts again.
    EXPECT_EQ(ErrorOfLine(first + "service 0x2 2 \"Two\"\nprogramme 19:00 60"), "");
}

TEST(LineUpText, WritesWhatItReads) {
    Collector read;
    std::string error;
    ASSERT_TRUE(sim::ReadLineUp(sim::kBuiltInLineUp, "x", read, error)) << error;
    sim::LineUpWriter writer;
    auto programme = read.programmes.begin();
    for (const sim::ServiceRecord& service : read.services) {
        writer.Add(service);
        for (; programme != read.programmes.end() && programme->first == service.id; ++programme)
            writer.Add(programme->second);
    }
    Collector again;
    ASSERT_TRUE(sim::ReadLineUp(writer.Take(), "y", again, error)) << error;
    EXPECT_EQ(again.services, read.services);
    EXPECT_EQ(again.programmes, read.programmes);
}

} // namespace
