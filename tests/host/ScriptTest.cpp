#include "Script.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

// A step as "number: type LINE" or "number: expect TEXT|MILLISECONDS".
std::string Put(const host::Step& step) {
    const std::string number = std::to_string(step.lineNumber) + ": ";
    if (const auto* type = std::get_if<host::TypeStep>(&step.action)) {
        return number + "type " + type->line;
    }
    const auto& expect = std::get<host::ExpectStep>(step.action);
    return number + "expect " + expect.text + '|' + std::to_string(expect.limit.count());
}

using Steps = std::vector<std::string>;

Steps Parse(std::string_view text) {
    host::ScriptError error{};
    const auto parsed = host::ParseScript(text, error);
    if (!parsed) {
        return {"error " + std::to_string(error.lineNumber)};
    }
    Steps steps;
    for (const host::Step& step : *parsed) {
        steps.push_back(Put(step));
    }
    return steps;
}

TEST(Script, LinesAreTypedAsTheyStandWithoutOuterBlanks) {
    EXPECT_EQ(Parse("5 1  99\n\t 7 \r\n99"), (Steps{"1: type 5 1  99", "2: type 7", "3: type 99"}));
}

TEST(Script, BlankLinesAndCommentsAreSkippedButCounted) {
    EXPECT_EQ(Parse("# one\n\n  # three\n \t\n5\n"), (Steps{"5: type 5"}));
}

TEST(Script, AnEmptyScriptHasNoSteps) {
    EXPECT_EQ(Parse(""), Steps{});
}

TEST(Script, AnExpectedTextRunsToTheEndOfTheLine) {
    EXPECT_EQ(Parse("expect  Command not implemented  \n"), (Steps{"1: expect Command not implemented|10000"}));
}

TEST(Script, ALimitMayFollowTheText) {
    EXPECT_EQ(Parse("expect cmd> within 3\nexpect cmd> within 0.25"),
              (Steps{"1: expect cmd>|3000", "2: expect cmd>|250"}));
}

TEST(Script, WithoutQuotesATextHasNoWordThatLooksLikeWithin) {
    for (const char* text : {"within reach", "came within", "within 5", "a within 5 s", "a within zero", "a within 0",
                             "a within -1", "a Within 5", "a witin 5", "a wihtin 5", "a within: 5", "a within 5s"}) {
        EXPECT_EQ(Parse("expect " + std::string(text)), Steps{"error 1"}) << text;
        EXPECT_EQ(Parse("expect \"" + std::string(text) + '"'), Steps{"1: expect " + std::string(text) + "|10000"});
    }
    EXPECT_EQ(Parse("expect without a width 5"), Steps{"1: expect without a width 5|10000"});
}

TEST(Script, ALineThatLooksLikeAnExpectationIsRefusedNotTyped) {
    for (const char* line : {"expectt x", "Expect x", "EXPECT x", "expct x", "exepct x", "expekt x", "expected x",
                             "expect: x", "expect\"x\"", "expectt", "within 5", "within zero", "Within"}) {
        EXPECT_EQ(Parse(line), Steps{"error 1"}) << line;
        EXPECT_EQ(Parse('\\' + std::string(line)), Steps{"1: type " + std::string(line)});
    }
    EXPECT_EQ(Parse("exec\nexport x\nexit\nx expectt"),
              (Steps{"1: type exec", "2: type export x", "3: type exit", "4: type x expectt"}));
}

TEST(Script, AByteOrderMarkIsSkipped) {
    EXPECT_EQ(Parse("\xef\xbb\xbf"
                    "expect a\n5"),
              (Steps{"1: expect a|10000", "2: type 5"}));
}

TEST(Script, ATextThatIsNotUtf8IsRefusedWithItsLine) {
    using namespace std::string_view_literals;
    for (const std::string_view bytes :
         {"\0"sv, "\x80"sv, "\xc3"sv, "\xc3("sv, "\xc0\xaf"sv, "\xe0\x80\x80"sv, "\xed\xa0\x80"sv, "\xe2\x82"sv,
          "\xf0\x80\x80\x80"sv, "\xf4\x90\x80\x80"sv, "\xf5\x80\x80\x80"sv, "\xff"sv}) {
        EXPECT_EQ(Parse("5\n" + std::string(bytes) + "\n99"), Steps{"error 2"}) << testing::PrintToString(bytes);
        EXPECT_EQ(Parse("5\n# " + std::string(bytes) + "\n99"), Steps{"error 2"}) << "in a comment";
    }
    const std::string good =
        "\x7f \xc2\x80 \xdf\xbf \xe0\xa0\x80 \xed\x9f\xbf \xef\xbf\xbf \xf0\x90\x80\x80 \xf4\x8f\xbf\xbf";
    EXPECT_EQ(Parse(good), Steps{"1: type " + good});
}

TEST(Script, Utf16IsRefusedInItsFirstLine) {
    using namespace std::string_view_literals;
    for (const std::string_view text : {"\xff\xfe"
                                        "5\0\n\0"sv,
                                        "\xfe\xff\0"
                                        "5\0\n"sv,
                                        "5\0\n\0"sv,
                                        "\0"
                                        "5\0\n"sv}) {
        EXPECT_EQ(Parse(text), Steps{"error 1"});
    }
}

TEST(Script, QuotesKeepBlanksLineEndsAndWithin) {
    EXPECT_EQ(Parse("expect \" a within 5 \"\nexpect \"x\\n\\t\\\"\\\\\" within 2\n"),
              (Steps{"1: expect  a within 5 |10000", "2: expect x\n\t\"\\|2000"}));
}

TEST(Script, ABackslashTypesALineThatWouldMeanSomethingElse) {
    EXPECT_EQ(Parse("\\expect it\n\\# 5\n\\\\\n"), (Steps{"1: type expect it", "2: type # 5", "3: type \\"}));
}

TEST(Script, BadLinesAreRefusedWithTheirNumber) {
    for (const char* line :
         {"expect", "expect \"\"", "expect \"open", "expect \"open\\\"", "expect \"a\\x\"", "expect \"a\" soon",
          "expect \"a\" within", "expect \"a\" within soon", "expect \"a\" within 0", "expect \"a\" within 0.0009",
          "expect \"a\" within -1", "expect \"a\" within 3601", "expect \"a\" within 1 2", "expect \"a\" within nan",
          "expect \"a\\"}) {
        EXPECT_EQ(Parse("5\n# comment\n" + std::string(line) + "\n99\n"), Steps{"error 3"}) << line;
    }
}

TEST(Script, AQuotedTextReadsBackAsItWas) {
    const std::string text = "a \"b\" \\ c\n\td ";
    EXPECT_EQ(Parse("expect " + host::Quoted(text)), Steps{"1: expect " + text + "|10000"});
}

} // namespace
