#include <gtest/gtest.h>

#include "LooseLines.h"

using walk::isButFor;

TEST(LooseLines, MayStandAnywhere) {
    for (const char* seen : {"line\nfirst second ", "first line\nsecond ", "first second line\n"})
        EXPECT_TRUE(isButFor({"line\n"}, seen, "first second ")) << seen;
}

TEST(LooseLines, MustBeThereAndWhole) {
    EXPECT_FALSE(isButFor({"line\n"}, "first second ", "first second "));
    EXPECT_FALSE(isButFor({"line\n"}, "li first ne\nsecond ", "first second "));
    EXPECT_FALSE(isButFor({"line\n"}, "line\nfirst line\nsecond ", "first second "));
}

TEST(LooseLines, OneThatIsExpectedTooIsSeenTwice) {
    EXPECT_TRUE(isButFor({"line\n"}, "line\n{typed 10}line\n", "line\n{typed 10}"));
    EXPECT_TRUE(isButFor({"line\n"}, "line\n{typed 10}line\n", "{typed 10}line\n"));
    EXPECT_FALSE(isButFor({"line\n"}, "{typed 10}line\n", "line\n{typed 10}"));
}

TEST(LooseLines, NoneLeavesNothingToTakeOut) {
    EXPECT_TRUE(isButFor({}, "first ", "first "));
    EXPECT_FALSE(isButFor({}, "first second ", "first "));
}
