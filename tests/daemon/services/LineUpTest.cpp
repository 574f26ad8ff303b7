#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "BuiltInLineUp.h"
#include "LineUpFile.h"
#include "LineUpTv.h"

namespace {

const char kSmall[] = "transponder air 1000\n  service 0x1 1 \"One\"\n";

// A temporary directory.
class Directory {
public:
    Directory() {
        std::string name = (std::filesystem::temp_directory_path() / "lineup-XXXXXX").string();
        EXPECT_NE(mkdtemp(name.data()), nullptr);
        path = name;
    }
    ~Directory() { std::filesystem::remove_all(path); }

    std::filesystem::path path;
};

std::int64_t Count(LineUpTv& tv, const std::string& where) {
    sim::Statement statement;
    EXPECT_TRUE(statement.Prepare(tv.database, "SELECT count(*) FROM " + where)) << where;
    EXPECT_EQ(statement.Next(), sim::Statement::Step::Row);
    return statement.Int(0);
}

TEST(BuiltInLineUp, HasSomethingOfEverything) {
    LineUpTv tv;
    const nlohmann::json state = tv.State("/lineUp");
    EXPECT_EQ(state["source"], "built-in");
    EXPECT_GE(state["services"], 60);
    for (const char* const antenna : {"air", "cable", "satellite"})
        EXPECT_GE(state[antenna], 15) << antenna;
    EXPECT_GE(state["transponders"], 9);
    EXPECT_GE(state["streamed"], 6);
    EXPECT_GE(state["programmes"], 100);
    EXPECT_EQ(Count(tv, "service"), state["services"]);
    for (const char* const where : {"type = 1", "type = 2", "type = 3", "type = 9", "profile = 0", "profile = 2",
                                    "hidden = 1", "listed = 0", "id < 0", "barker = 1 AND listed = 1", "captions = 1"})
        EXPECT_GT(Count(tv, std::string("service WHERE ") + where), 1) << where;
    EXPECT_GT(Count(tv, "(SELECT 1 FROM service GROUP BY major, minor"
                        " HAVING count(DISTINCT antenna) > 1)"),
              3);
    EXPECT_GT(Count(tv, "service WHERE id NOT IN (SELECT service FROM programme)"), 3);
    EXPECT_GT(Count(tv, "programme WHERE title IS NULL"), 0);
    EXPECT_TRUE(tv.GetLineUp().FindFacts(kNorvexOne));
}

TEST(LineUp, StandsWhenAnotherOneIsRefused) {
    LineUpTv tv;
    const std::string before = tv.Show();
    const nlohmann::json state = tv.State("/lineUp");
    EXPECT_EQ(tv.Load(std::string(kSmall) + "  service 0x1 2 \"Two\"\n"),
              "loaded:3: expected a service id that no other service has, found it again");
    EXPECT_EQ(tv.Load(std::string(kSmall) + "oops"),
              "loaded:3: expected transponder, streamed, service or programme, found \"oops\"");
    EXPECT_EQ(tv.Show(), before);
    EXPECT_EQ(tv.State("/lineUp"), state);
    EXPECT_EQ(tv.GetLineUp().GetLoads(), 1u);
}

TEST(LineUp, IsShownAsItCanBeLoaded) {
    LineUpTv tv;
    const std::string shown = tv.Show();
    EXPECT_EQ(tv.Load(shown), "");
    EXPECT_EQ(tv.Show(), shown);
    EXPECT_EQ(tv.Load(kSmall), "");
    EXPECT_EQ(tv.Show(), kSmall);
    EXPECT_EQ(tv.State("/lineUp/services"), 1);
    EXPECT_EQ(tv.State("/lineUp/source"), "loaded");
    EXPECT_EQ(tv.Load(""), "");
    EXPECT_EQ(tv.Show(), "");
    // In pieces, without gaps between them.
    std::string long_ = "transponder air 1000\n";
    for (int number = 0; number < 1203; ++number)
        long_ += "  service " + sim::ToHexText(std::uint64_t(number + 1) << 52).get<std::string>() + " " +
                 std::to_string(number) + " \"\"\n";
    EXPECT_EQ(tv.Load(long_), "");
    EXPECT_EQ(tv.Show(), long_);
}

TEST(LineUp, ResetBringsTheNewTvsBack) {
    LineUpTv builtIn;
    const std::string before = builtIn.Show();
    EXPECT_EQ(builtIn.Load(kSmall), "");
    builtIn.context.Reset();
    EXPECT_EQ(builtIn.Show(), before);
    EXPECT_EQ(builtIn.State("/lineUp/source"), "built-in");

    LineUpTv given(kSmall);
    EXPECT_EQ(given.Load(sim::kBuiltInLineUp), "");
    given.context.Reset();
    EXPECT_EQ(given.Show(), kSmall);
    EXPECT_EQ(given.State("/lineUp/source"), "test");
}

TEST(LineUp, IsKeptInTheDatabase) {
    const Directory directory;
    const std::string file = directory.path / "tv.db";
    {
        LineUpTv tv(nullptr, file);
        EXPECT_EQ(tv.State("/lineUp/source"), "built-in");
        EXPECT_EQ(tv.Load(kSmall), "");
    }
    {
        LineUpTv tv(nullptr, file);
        EXPECT_EQ(tv.Show(), kSmall);
        EXPECT_EQ(tv.State("/lineUp/source"), "database");
        // A given line-up replaces it.
    }
    {
        LineUpTv tv("transponder cable 2000\n  service 0x2 2 \"Two\"\n", file);
        EXPECT_EQ(tv.State("/lineUp/cable"), 1);
    }
    LineUpTv tv(nullptr, file);
    EXPECT_EQ(tv.State("/lineUp/cable"), 1);
    tv.context.Reset();
    EXPECT_EQ(tv.State("/lineUp/source"), "built-in");
    EXPECT_GE(tv.State("/lineUp/services"), 60);
}

TEST(LineUp, AnEmptyOneIsKeptAsWell) {
    const Directory directory;
    const std::string file = directory.path / "tv.db";
    EXPECT_EQ(LineUpTv("", file).Show(), "");
    EXPECT_EQ(LineUpTv(nullptr, file).Show(), "");
}

TEST(LineUpFile, TellsWhatCannotBeRead) {
    const Directory directory;
    std::string text;
    std::string error;
    EXPECT_FALSE(sim::ReadLineUpFile(directory.path / "none", "none", text, error));
    EXPECT_EQ(error, "none: No such file or directory");
    EXPECT_FALSE(sim::ReadLineUpFile(directory.path, "here", text, error));
    EXPECT_EQ(error, "here: expected a regular file");
    std::ofstream(directory.path / "some") << kSmall;
    EXPECT_TRUE(sim::ReadLineUpFile(directory.path / "some", "some", text, error));
    EXPECT_EQ(text, kSmall);
}

TEST(BootupService, IsWhatTheTvStartsWith) {
    const Directory directory;
    const std::string file = directory.path / "tv.db";
    {
        LineUpTv tv(nullptr, file);
        LineUpClient client(tv);
        EXPECT_TRUE(tv.State("/lineUp/bootup").is_null());
        EXPECT_EQ(client.SetBootupService(0x8000000000002001ULL), kDone);
        EXPECT_TRUE(tv.MainState("service").is_null());
        EXPECT_EQ(
            tv.State("/lineUp/bootup"),
            (nlohmann::json{{"service", "0x8000000000002001"}, {"antenna", 1}, {"serviceMode", 0}, {"option", 0}}));
    }
    {
        LineUpTv tv(nullptr, file);
        EXPECT_EQ(tv.State("/lineUp/bootup/service"), "0x8000000000002001");
        EXPECT_EQ(tv.MainState("service"), "0x8000000000002001");
        EXPECT_EQ(tv.MainState("tuner/at"), "cable/338000");
        tv.context.Reset();
        EXPECT_TRUE(tv.State("/lineUp/bootup").is_null());
    }
    EXPECT_TRUE(LineUpTv(nullptr, file).MainState("service").is_null());
}

TEST(BootupService, IsRefusedWhenItCannotBe) {
    LineUpTv tv;
    LineUpClient client(tv);
    EXPECT_EQ(client.SetBootupService(kInvalidService), -3);
    EXPECT_TRUE(tv.Logged("tvtunerinfosrc", "SetBootupService refused"));
    EXPECT_EQ(client.SetBootupService(0x999), -2);
    EXPECT_EQ(client.SetBootupService(0x2001, {0, 0}), -1);
    EXPECT_EQ(client.SetBootupService(0x2001, {3, 0}), -3);
    EXPECT_EQ(client.SetBootupService(0x2001, {-1, -2}), -3);
    EXPECT_TRUE(tv.State("/lineUp/bootup").is_null());
    EXPECT_EQ(client.SetBootupService(0x2001, {1, 0}), kDone);
    // With a line-up without it, the TV starts without a service.
    const Directory directory;
    const std::string file = directory.path / "tv.db";
    {
        LineUpTv kept(kSmall, file);
        LineUpClient keeper(kept);
        EXPECT_EQ(keeper.SetBootupService(1), kDone);
    }
    EXPECT_TRUE(LineUpTv("", file).MainState("service").is_null());
}

TEST(State, StaysSmall) {
    std::string text = "transponder air 1000\n";
    for (int number = 1; number <= 20000; ++number)
        text += "service " + sim::ToHexText(static_cast<std::uint64_t>(number)).get<std::string>() + " 1 \"\"\n";
    LineUpTv tv(text.c_str());
    EXPECT_LT(tv.context.DescribeState().dump().size(), 8000u);
}

} // namespace
