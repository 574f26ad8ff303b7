#include <algorithm>
#include <locale>
#include <utility>

#include <gtest/gtest.h>

#include "DriverTest.h"
#include "FakeProcesses.h"
#include "GstPluginDebug.h"

namespace {

// What a valid number brings: echo, announcement, viewer.
std::string Announced(const std::string& number, const std::string& element) {
    return number + "\n{flush}[GST Debug Log ON] ExecuteLogOn : " + element + "\n{flush}{vfork}";
}
std::string Viewer(const std::string& number, const std::string& element) {
    return Announced(number, element) + "{child: execl(/usr/bin/dlogutil; dlogutil, " + element + ")}{media}";
}

std::string Invalid(const std::string& number) {
    return number + "\n{flush} The input is invalid!! \n{media}";
}

class MediaLogMenu : public DriverTest {
protected:
    std::string RunMenu(const std::string& words = "") {
        return Run(words, [this] { m_result = GstPluginDebugFunction(); });
    }
    int m_result = -1;
};

} // namespace

TEST_F(MediaLogMenu, IsWrittenInOnePieceAndLeftWith99) {
    EXPECT_EQ(RunMenu("99"), "{media}<99>99\n{flush}");
    EXPECT_EQ(m_result, 0);
    EXPECT_TRUE(Console::WroteInOnePiece(screens::kMediaMenu));
    EXPECT_EQ(CreateGstDebugUtilMenu(), screens::kMediaMenu);
}

TEST_F(MediaLogMenu, LeavesByTheNumber) {
    EXPECT_EQ(RunMenu("099"), "{media}<099>99\n{flush}");
    EXPECT_EQ(RunMenu("4294967395"), "{media}<099>99\n{flush}{media}<4294967395>99\n{flush}");
}

// 2 starts the same viewer as 1, and 11 none although it is listed.
TEST_F(MediaLogMenu, EachNumberStartsTheViewerOfItsElement) {
    const std::pair<const char*, const char*> rows[] = {
        {"0", "tvvideosink"}, {"1", "tvvideodec"},  {"2", "tvvideodec"},  {"3", "tvtunerinfosrc"},
        {"4", "tvaudiosink"}, {"5", "tvaudiodec"},  {"6", "tvdemuxer"},   {"7", "tvdrmsink"},
        {"8", "extaudiosrc"}, {"9", "extvideosrc"}, {"10", "tvfpaparser"}};
    std::string words;
    std::string expected = "{media}";
    for (const auto& [number, element] : rows) {
        words += std::string(number) + " ";
        expected += "<" + std::string(number) + ">" + Viewer(number, element);
    }
    EXPECT_EQ(RunMenu(words + "11 99"), expected + "<11>" + Invalid("11") + "<99>99\n{flush}");
    EXPECT_EQ(FakeProcesses::GetChildren().size(), 11u);
}

TEST_F(MediaLogMenu, NumbersWithoutARowAreInvalid) {
    EXPECT_EQ(RunMenu("12 98 100 2147483647 99"), "{media}<12>" + Invalid("12") + "<98>" + Invalid("98") + "<100>" +
                                                      Invalid("100") + "<2147483647>" + Invalid("2147483647") +
                                                      "<99>99\n{flush}");
    EXPECT_TRUE(FakeProcesses::GetChildren().empty());
}

TEST_F(MediaLogMenu, LowThirtyTwoBitsCountAndTheEchoIsTheNumber) {
    EXPECT_EQ(RunMenu("007 4294967295 4294967296 2147483648 99999999999999999999 99"),
              "{media}<007>" + Viewer("7", "tvdrmsink") + "<4294967295>" + Invalid("-1") + "<4294967296>" +
                  Viewer("0", "tvvideosink") + "<2147483648>" + Invalid("-2147483648") + "<99999999999999999999>" +
                  Invalid("-1") + "<99>99\n{flush}");
}

TEST_F(MediaLogMenu, WordsThatAreNoDigitsAreIgnoredSilently) {
    EXPECT_EQ(RunMenu("-1 +1 abc 1x x1 99"),
              "{media}<-1>{media}<+1>{media}<abc>{media}<1x>{media}<x1>{media}<99>99\n{flush}");
}

TEST_F(MediaLogMenu, LeavingItIsNotImplementedInTheProcessMenu) {
    EXPECT_EQ(Run("3 11 99 99"),
              "{entered}{menu}<3>{media}<11>" + Invalid("11") + "<99>99\n{flush}{not implemented}{menu}<99>");
}

TEST_F(MediaLogMenu, MissingViewerEndsTheChildWithStatus1AndTheMenuGoesOn) {
    FakeProcesses::RemovePrograms();
    EXPECT_EQ(RunMenu("5 99"), "{media}<5>" + Announced("5", "tvaudiodec") +
                                   "{child: execl(/usr/bin/dlogutil; dlogutil, tvaudiodec)}"
                                   "{child: _exit(1)}{media}<99>99\n{flush}");
    ASSERT_EQ(FakeProcesses::GetChildren().size(), 1u);
    EXPECT_EQ(FakeProcesses::WaitForExitStatus(FakeProcesses::GetChildren()[0]), 1);
}

TEST_F(MediaLogMenu, ChildThatCannotBeMadeIsNotReported) {
    FakeProcesses::Exhaust();
    EXPECT_EQ(RunMenu("5 99"), "{media}<5>" + Announced("5", "tvaudiodec") + "{media}<99>99\n{flush}");
    EXPECT_EQ(m_child_Pid, -1);
    EXPECT_EQ(ExecuteLogOn("anything", 3), -1);
}

TEST_F(MediaLogMenu, FinishedViewersAreNotReapedAndTheNewestProcessIdIsKept) {
    RunMenu("0 1 11 99");
    const std::vector<pid_t> children = FakeProcesses::GetChildren();
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(m_child_Pid, children[1]);
    EXPECT_EQ(FakeProcesses::WaitForExitStatus(children[0]), 0);
    EXPECT_EQ(FakeProcesses::WaitForExitStatus(children[1]), 0);
}

TEST_F(MediaLogMenu, ExecuteLogOnAnswersTheProcessIdAndDoesNotUseTheRow) {
    for (const int row : {3, -77}) {
        Timeline::Now().Clear();
        int child = 0;
        EXPECT_EQ(Run("", [&] { child = ExecuteLogOn("anything", row); }),
                  "[GST Debug Log ON] ExecuteLogOn : anything\n{flush}{vfork}"
                  "{child: execl(/usr/bin/dlogutil; dlogutil, anything)}");
        EXPECT_EQ(child, FakeProcesses::GetChildren().back());
    }
}

TEST_F(MediaLogMenu, RepeatsWhileTheInputIsAtItsEndOrBroken) {
    console.Type("11").EndInput(3).Type("12").BreakInput(2).Type("99");
    EXPECT_EQ(RunMenu(), "{media}<11>" + Invalid("11") + "<end of input>{media}{media}{media}<12>" + Invalid("12") +
                             "<broken input>{media}{media}<99>99\n{flush}");
}

TEST_F(MediaLogMenu, NumbersAreDigitsAlone) {
    for (const char* number : {"0", "1234567890", "99999999999999999999999999"})
        EXPECT_TRUE(isNumberGst(number)) << number;
    for (const std::string& word :
         {std::string(), std::string("1\0", 2), std::string("-1"), std::string("+1"), std::string(" 1"),
          std::string("1 "), std::string("1a"), std::string("a1"), std::string("\xb2")})
        EXPECT_FALSE(isNumberGst(word)) << word;
}

namespace {

// A locale in which "q" is a digit.
class DigitQ : public std::ctype<char> {
public:
    DigitQ() : std::ctype<char>(GetTable()) {}

private:
    static const mask* GetTable() {
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
