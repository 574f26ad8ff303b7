#include <algorithm>
#include <locale>
#include <utility>

#include <gtest/gtest.h>

#include "DriverTest.h"
#include "FakeProcesses.h"
#include "GstPluginDebug.h"
#include "Screens.h"

using namespace pieces;

namespace {

const std::string kMediaMenu = screens::mediaMenu + "\n{flush}cmd> {flush}";

// What a valid number brings: echo, announcement, viewer.
std::string viewer(const std::string& number, const std::string& element) {
    return number + "\n{flush}[GST Debug Log ON] ExecuteLogOn : " + element +
           "\n{flush}{vfork}{child: execl(/usr/bin/dlogutil; dlogutil, " + element + ")}";
}

std::string invalid(const std::string& number) {
    return number + "\n{flush} The input is invalid!! \n";
}

} // namespace

class MediaLogMenu : public DriverTest {
protected:
    std::string runMenu(const std::string& words) {
        return run(words, [this] { m_result = GstPluginDebugFunction(); });
    }
    int m_result = -1;
};

TEST_F(MediaLogMenu, IsPrintedWithItsPromptAndLeftWith99) {
    EXPECT_EQ(runMenu("99"), kMediaMenu + typed("99") + "99\n{flush}");
    EXPECT_EQ(m_result, 0);
}

TEST_F(MediaLogMenu, TextIsExact) {
    EXPECT_EQ(CreateGstDebugUtilMenu(), screens::mediaMenu);
    runMenu("99");
    const std::vector<std::string> insertions = console.insertions();
    EXPECT_EQ(std::count(insertions.begin(), insertions.end(), screens::mediaMenu), 1)
        << "written in one piece";
}

TEST_F(MediaLogMenu, LeavesByTheNumber) {
    EXPECT_EQ(runMenu("099"), kMediaMenu + typed("099") + "99\n{flush}");
    EXPECT_EQ(run("4294967395", GstPluginDebugFunction), kMediaMenu + typed("099") + "99\n{flush}" +
                                                             kMediaMenu + typed("4294967395") +
                                                             "99\n{flush}");
}

TEST_F(MediaLogMenu, EachNumberStartsTheViewerOfItsElement) {
    const std::pair<const char*, const char*> rows[] = {
        {"0", "tvvideosink"}, {"1", "tvvideodec"},  {"2", "tvvideodec"},  {"3", "tvtunerinfosrc"},
        {"4", "tvaudiosink"}, {"5", "tvaudiodec"},  {"6", "tvdemuxer"},   {"7", "tvdrmsink"},
        {"8", "extaudiosrc"}, {"9", "extvideosrc"}, {"10", "tvfpaparser"}};
    std::string words;
    std::string expected = kMediaMenu;
    for (const auto& [number, element] : rows) {
        words += std::string(number) + " ";
        expected += typed(number) + viewer(number, element) + kMediaMenu;
    }
    EXPECT_EQ(runMenu(words + "99"), expected + typed("99") + "99\n{flush}");
    EXPECT_EQ(FakeProcesses::children().size(), 11u);
}

TEST_F(MediaLogMenu, TwoStartsTheSameViewerAsOne) {
    EXPECT_EQ(runMenu("2 1 99"), kMediaMenu + typed("2") + viewer("2", "tvvideodec") + kMediaMenu +
                                     typed("1") + viewer("1", "tvvideodec") + kMediaMenu +
                                     typed("99") + "99\n{flush}");
}

TEST_F(MediaLogMenu, ElevenIsInvalidAlthoughItIsListed) {
    EXPECT_EQ(runMenu("11 99"),
              kMediaMenu + typed("11") + invalid("11") + kMediaMenu + typed("99") + "99\n{flush}");
    EXPECT_TRUE(FakeProcesses::children().empty());
}

TEST_F(MediaLogMenu, NumbersWithoutARowAreInvalid) {
    EXPECT_EQ(runMenu("12 98 100 2147483647 99"),
              kMediaMenu + typed("12") + invalid("12") + kMediaMenu + typed("98") + invalid("98") +
                  kMediaMenu + typed("100") + invalid("100") + kMediaMenu + typed("2147483647") +
                  invalid("2147483647") + kMediaMenu + typed("99") + "99\n{flush}");
}

TEST_F(MediaLogMenu, LeadingZeroesAreAcceptedAndTheEchoIsTheNumber) {
    EXPECT_EQ(runMenu("007 99"), kMediaMenu + typed("007") + viewer("7", "tvdrmsink") + kMediaMenu +
                                     typed("99") + "99\n{flush}");
}

TEST_F(MediaLogMenu, LowThirtyTwoBitsCount) {
    EXPECT_EQ(runMenu("4294967295 4294967296 2147483648 99999999999999999999 99"),
              kMediaMenu + typed("4294967295") + invalid("-1") + kMediaMenu + typed("4294967296") +
                  viewer("0", "tvvideosink") + kMediaMenu + typed("2147483648") +
                  invalid("-2147483648") + kMediaMenu + typed("99999999999999999999") +
                  invalid("-1") + kMediaMenu + typed("99") + "99\n{flush}");
}

TEST_F(MediaLogMenu, WordsThatAreNoDigitsAreIgnoredSilently) {
    EXPECT_EQ(runMenu("-1 +1 abc 1x x1 99"), kMediaMenu + typed("-1") + kMediaMenu + typed("+1") +
                                                 kMediaMenu + typed("abc") + kMediaMenu +
                                                 typed("1x") + kMediaMenu + typed("x1") +
                                                 kMediaMenu + typed("99") + "99\n{flush}");
}

TEST_F(MediaLogMenu, LeavingItIsNotImplementedInTheProcessMenu) {
    EXPECT_EQ(run("3 11 99 99"), entered + menu + typed("3") + kMediaMenu + typed("11") +
                                     invalid("11") + kMediaMenu + typed("99") + "99\n{flush}" +
                                     notImplemented + menu + typed("99"));
}

TEST_F(MediaLogMenu, MissingViewerEndsTheChildWithStatus1AndTheMenuGoesOn) {
    FakeProcesses::removePrograms();
    EXPECT_EQ(runMenu("5 99"), kMediaMenu + typed("5") +
                                   "5\n{flush}[GST Debug Log ON] ExecuteLogOn : tvaudiodec\n"
                                   "{flush}{vfork}{child: execl(/usr/bin/dlogutil; dlogutil, "
                                   "tvaudiodec)}{child: _exit(1)}" +
                                   kMediaMenu + typed("99") + "99\n{flush}");
    ASSERT_EQ(FakeProcesses::children().size(), 1u);
    EXPECT_EQ(FakeProcesses::exitStatus(FakeProcesses::children()[0]), 1);
}

TEST_F(MediaLogMenu, ChildThatCannotBeMadeIsNotReported) {
    FakeProcesses::exhaust();
    EXPECT_EQ(runMenu("5 99"), kMediaMenu + typed("5") +
                                   "5\n{flush}[GST Debug Log ON] ExecuteLogOn : tvaudiodec\n"
                                   "{flush}{vfork}" +
                                   kMediaMenu + typed("99") + "99\n{flush}");
    EXPECT_EQ(m_child_Pid, -1);
}

TEST_F(MediaLogMenu, FinishedViewersAreNotReaped) {
    runMenu("0 1 99");
    ASSERT_EQ(FakeProcesses::children().size(), 2u);
    EXPECT_EQ(FakeProcesses::exitStatus(FakeProcesses::children()[0]), 0);
    EXPECT_EQ(FakeProcesses::exitStatus(FakeProcesses::children()[1]), 0);
}

TEST_F(MediaLogMenu, NewestViewersProcessIdIsKept) {
    runMenu("0 1 11 99");
    ASSERT_EQ(FakeProcesses::children().size(), 2u);
    EXPECT_EQ(m_child_Pid, FakeProcesses::children()[1]);
}

TEST_F(MediaLogMenu, ExecuteLogOnAnswersTheProcessIdAndDoesNotUseTheRow) {
    int first = 0;
    int second = 0;
    EXPECT_EQ(run("",
                  [&] {
                      first = ExecuteLogOn("anything", 3);
                      second = ExecuteLogOn("anything", -77);
                  }),
              "[GST Debug Log ON] ExecuteLogOn : anything\n{flush}{vfork}{child: "
              "execl(/usr/bin/dlogutil; dlogutil, anything)}"
              "[GST Debug Log ON] ExecuteLogOn : anything\n{flush}{vfork}{child: "
              "execl(/usr/bin/dlogutil; dlogutil, anything)}");
    ASSERT_EQ(FakeProcesses::children().size(), 2u);
    EXPECT_EQ(first, FakeProcesses::children()[0]);
    EXPECT_EQ(second, FakeProcesses::children()[1]);
    FakeProcesses::exhaust();
    EXPECT_EQ(ExecuteLogOn("anything", 3), -1);
}

TEST_F(MediaLogMenu, MenuRepeatsAtTheEndOfInput) {
    console.type("11").endInput(3).type("99");
    EXPECT_EQ(runMenu(""), kMediaMenu + typed("11") + invalid("11") + kMediaMenu + typed("<end>") +
                               kMediaMenu + kMediaMenu + kMediaMenu + typed("99") + "99\n{flush}");
}

TEST_F(MediaLogMenu, MenuRepeatsWhileTheStreamIsBad) {
    console.breakInput(2).type("99");
    EXPECT_EQ(runMenu(""), kMediaMenu + typed("<broken>") + kMediaMenu + kMediaMenu + typed("99") +
                               "99\n{flush}");
}

TEST_F(MediaLogMenu, NumbersAreDigitsAlone) {
    EXPECT_TRUE(isNumberGst("0"));
    EXPECT_TRUE(isNumberGst("1234567890"));
    EXPECT_TRUE(isNumberGst("99999999999999999999999999"));
    EXPECT_FALSE(isNumberGst(""));
    EXPECT_FALSE(isNumberGst("-1"));
    EXPECT_FALSE(isNumberGst("+1"));
    EXPECT_FALSE(isNumberGst(" 1"));
    EXPECT_FALSE(isNumberGst("1 "));
    EXPECT_FALSE(isNumberGst("1a"));
    EXPECT_FALSE(isNumberGst("a1"));
    EXPECT_FALSE(isNumberGst("\xb2"));
    EXPECT_FALSE(isNumberGst(std::string("1\0", 2)));
}

namespace {

// A locale in which "q" is a digit.
class DigitQ : public std::ctype<char> {
public:
    DigitQ() : std::ctype<char>(table()) {}

private:
    static const mask* table() {
        static mask masks[table_size];
        std::copy_n(classic_table(), table_size, masks);
        masks[static_cast<unsigned char>('q')] = digit;
        return masks;
    }
};

} // namespace

TEST_F(MediaLogMenu, WhatADigitIsTheGlobalLocaleDecides) {
    EXPECT_FALSE(isNumberGst("q"));
    const std::locale old = std::locale::global(std::locale(std::locale::classic(), new DigitQ));
    const bool accepted = isNumberGst("1q");
    std::locale::global(old);
    EXPECT_TRUE(accepted);
    EXPECT_FALSE(isNumberGst("q"));
}
