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

TEST(Script, WithinIsPartOfTheTextWhereNoNumberFollowsIt) {
    EXPECT_EQ(Parse("expect within reach\nexpect came within\nexpect within 5\nexpect a within 5 s"),
              (Steps{"1: expect within reach|10000", "2: expect came within|10000", "3: expect within 5|10000",
                     "4: expect a within 5 s|10000"}));
}

TEST(Script, QuotesKeepBlanksLineEndsAndWithin) {
    EXPECT_EQ(Parse("expect \" a within 5 \"\nexpect \"x\\n\\t\\\"\\\\\" within 2\n"),
              (Steps{"1: expect  a within 5 |10000", "2: expect x\n\t\"\\|2000"}));
}

TEST(Script, ABackslashTypesALineThatWouldMeanSomethingElse) {
    EXPECT_EQ(Parse("\\expect it\n\\# 5\n\\\\\nexpected\n"),
              (Steps{"1: type expect it", "2: type # 5", "3: type \\", "4: type expected"}));
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
