#include <cstring>

#include <gtest/gtest.h>

#include "LineUpTv.h"

namespace {

const char kText[] = "transponder air 474000\n"
                     "service 0x1 1 \"One\"\n"
                     "  programme 06:00 60 \"Frühstück 🎷\"\n"
                     "  programme 07:30 30\n"
                     "  programme 23:00 120 \"Night\"\n"
                     "service 0x2 2 \"Two\"\n";

struct Programme {
    std::int32_t status = 0;
    std::uint64_t start = 0;
    std::uint32_t duration = 0;
    std::optional<std::u16string> title;
};

class ProgrammesTest : public testing::Test {
protected:
    Programme At(const std::string& time, std::uint64_t service = 1) {
        EXPECT_EQ(tv.Set("clock", {"2026-03-01T" + time + ":00Z"}), "");
        const Reply reply = client.Call(interfaces::ServiceGuideMethod::GetCurrentProgram, service, OutObject{});
        Programme programme;
        programme.status = reply.Status();
        const auto branch = reply.Find(2);
        EXPECT_EQ(branch.has_value(), programme.status > 0);
        if (!branch)
            return programme;
        wire::NodeCursor cursor(*branch);
        wire::Node node;
        while (cursor.Next(node)) {
            if (node.tag == 0) {
                EXPECT_TRUE(node.Get(programme.start));
            }
            if (node.tag == 1) {
                EXPECT_TRUE(node.Get(programme.duration));
            }
            if (node.tag == 2) {
                programme.title.emplace(node.size / 2, u'\0');
                std::memcpy(programme.title->data(), node.data, node.size);
            }
        }
        return programme;
    }

    LineUpTv tv{kText};
    LineUpClient client{tv};
};

constexpr std::uint64_t kMidnight = 1772323200; // of 2026-03-01
constexpr std::uint64_t kHour = 3600;

TEST_F(ProgrammesTest, AreOnByTheClock) {
    const Programme breakfast = At("06:00");
    EXPECT_EQ(breakfast.status, kDone);
    EXPECT_EQ(breakfast.start, kMidnight + 6 * kHour);
    EXPECT_EQ(breakfast.duration, 3600u);
    // A surrogate pair counts as two.
    EXPECT_EQ(breakfast.title, u"Frühstück 🎷");
    EXPECT_EQ(breakfast.title->size(), 12u);
    EXPECT_EQ(At("06:59").start, breakfast.start);
    EXPECT_EQ(At("05:59").status, 0);
    EXPECT_EQ(At("07:00").status, 0);
    const Programme untitled = At("07:45");
    EXPECT_EQ(untitled.status, kDone);
    EXPECT_FALSE(untitled.title);
}

TEST_F(ProgrammesTest, GoOnBeyondMidnight) {
    EXPECT_EQ(At("23:30").start, kMidnight + 23 * kHour);
    const Programme after = At("00:59");
    EXPECT_EQ(after.title, u"Night");
    EXPECT_EQ(after.start, kMidnight - 3600);
    EXPECT_EQ(At("01:00").status, 0);
}

TEST_F(ProgrammesTest, OfAServiceWithoutAnyAreNoRefusal) {
    EXPECT_EQ(At("06:00", 2).status, 0);
    EXPECT_LT(At("06:00", 3).status, 0);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "GetCurrentProgram refused: unknown service 0x3"));
    EXPECT_LT(At("06:00", kInvalidService).status, 0);
}

TEST_F(ProgrammesTest, AreNeededWhileAServiceLacksThePresentOne) {
    EXPECT_EQ(tv.Set("clock", {"2026-03-01T06:10:00Z"}), "");
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 0);
    EXPECT_EQ(client.IsTuneAroundNeeded({1, 2}), 1);
    EXPECT_EQ(client.IsTuneAroundNeeded({}), 0);
    EXPECT_EQ(client.IsTuneAroundNeeded({kInvalidService, 99}), 0);
    EXPECT_EQ(tv.Set("clock", {"2026-03-01T07:10:00Z"}), "");
    EXPECT_EQ(client.IsTuneAroundNeeded({1}), 1);
}

TEST_F(ProgrammesTest, ClockTakesTimesOnly) {
    for (const char* const time : {"", "noon", "2026-13-01T00:00:00Z", "-1", "253402300800"})
        EXPECT_NE(tv.Set("clock", {time}), "") << time;
    EXPECT_NE(tv.Set("clock", {}), "");
    EXPECT_EQ(tv.State("/clock/set"), false);
    EXPECT_EQ(tv.Set("clock", {"2026-03-01T12:00:00+02:00"}), "");
    EXPECT_EQ(tv.State("/clock/now").get<std::string>().substr(0, 16), "2026-03-01T10:00");
    EXPECT_EQ(tv.Set("clock", {"86400"}), "");
    EXPECT_EQ(tv.State("/clock/now").get<std::string>().substr(0, 16), "1970-01-02T00:00");
    EXPECT_EQ(tv.State("/clock/set"), true);
    EXPECT_EQ(tv.Set("clock", {"machine"}), "");
    EXPECT_EQ(tv.State("/clock/set"), false);
}

} // namespace
