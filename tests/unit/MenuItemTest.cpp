#include <random>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>
#include <norvex/core/MessageBuffer.h>

#include "TestItems.h"
#include "Tree.h"

namespace {

// What `before` becomes when it is read from a tree; "refused, " stands before it on failure.
std::string ReadItem(const Tree& tree, TSMenuItem before = TSMenuItem()) {
    const std::string outcome = ReadFrom(before, tree) ? "" : "refused, ";
    return outcome + ToText(before);
}

} // namespace

TEST(MenuItem, BeginsNamelessOffAndWithIdZero) {
    EXPECT_EQ(ToText(TSMenuItem()), " off 0");
}

TEST(MenuItem, TakesNameStateAndId) {
    std::string name = "Pipeline";
    TSMenuItem item = MakeItem(name, true, 4294967295u);
    name = "another";
    EXPECT_EQ(ToText(item), "Pipeline on 4294967295");
}

TEST(MenuItem, CopiesAndMovesKeepNameStateAndIdAndAreIndependent) {
    TSMenuItem item = MakeItem("Tuner", true, 42);
    TSMenuItem copy(item);
    TSMenuItem assigned = MakeItem("other", false, 1);
    assigned = item;
    item = MakeItem("changed", false, 1);
    EXPECT_EQ(ToText({copy, assigned}), "Tuner on 42, Tuner on 42");
    const TSMenuItem moved(std::move(copy));
    TSMenuItem moveAssigned;
    moveAssigned = std::move(assigned);
    EXPECT_EQ(ToText({moved, moveAssigned}), "Tuner on 42, Tuner on 42");
}

TEST(MenuItem, IsSinglyDerivedFromTheLibrarysBase) {
    static_assert(std::is_base_of_v<TCMarshalable, TSMenuItem>);
    TSMenuItem item;
    EXPECT_EQ(static_cast<void*>(static_cast<TIMarshalable*>(&item)), static_cast<void*>(&item));
}

TEST(MenuItem, WritesNameStateAndIdUnderTags0To2) {
    TSMenuItem item = MakeItem("abc", true, 0x01020304u);
    EXPECT_EQ(Written(item), "{0={0=value 03000000, 1=bytes \"abc\"}, 1=value 01, 2=value 04030201}");
    TSMenuItem nameless;
    EXPECT_EQ(Written(nameless), "{0={0=value 00000000}, 1=value 00, 2=value 00000000}")
        << "an empty name is its length alone";
    TSMenuItem zeroes = MakeItem(std::string("a\0b\0", 4), false, 1);
    EXPECT_EQ(Written(zeroes), "{0={0=value 04000000, 1=bytes \"a\\x00b\\x00\"}, 1=value 00, 2=value 01000000}");
}

TEST(MenuItem, ReadsEachFieldFromItsTag) {
    EXPECT_EQ(ReadItem(Tree::OfItem("Scan", true, 77)), "Scan on 77");
    EXPECT_EQ(ReadItem(Tree::OfItem("Scan", false, 3), MakeItem("", true, 0)), "Scan off 3");
    EXPECT_EQ(ReadItem(Tree().Value(2, 9).Value(1, true).Text(0, "last")), "last on 9") << "in any order";
}

TEST(MenuItem, MissingChildrenLeaveTheirFields) {
    EXPECT_EQ(ReadItem(Tree().Value(1, false), MakeItem("kept", true, 5)), "kept off 5");
    EXPECT_EQ(ReadItem(Tree(), MakeItem("kept", true, 5)), "kept on 5");
}

TEST(MenuItem, EmptyNameInTheTreeLeavesTheOldName) {
    EXPECT_EQ(ReadItem(Tree::OfItem("", true, 5), MakeItem("kept", false, 0)), "kept on 5");
}

TEST(MenuItem, AnyByteButZeroIsOn) {
    EXPECT_EQ(ReadItem(Tree().ValueBytes(1, "\x02")), " on 0");
}

TEST(MenuItem, ResultsAreTheFormatters) {
    TSMenuItem item = MakeItem("a", true, 1);
    EXPECT_FALSE(WriteToRefusingBranch(item));
    const Tree wrongState = Tree().Text(0, "new").ValueBytes(1, "four").Value(2, 3);
    EXPECT_EQ(ReadItem(wrongState, MakeItem("a", true, 1)), "refused, new on 3") << "what could be read stands";
}

TEST(MenuItem, HasTheLibrarysDefaultsForTheRest) {
    TSMenuItem item;
    EXPECT_EQ(item.GetMarshalableStorageType(), TCMarshalable().GetMarshalableStorageType());
    unsigned long size = 12;
    EXPECT_FALSE(item.GetSizeOfMarshalled(size));
    EXPECT_EQ(size, 12u);
}

TEST(MenuItem, RandomItemsComeBackAsTheyWere) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 500; ++round) {
        std::string name(random() % 40, '\0');
        for (char& c : name)
            c = static_cast<char>(random() & 0xff);
        TSMenuItem item = MakeItem(name, (random() & 1) != 0, static_cast<unsigned int>(random()));
        TCMessageBuffer buffer;
        ASSERT_TRUE(item.Store(&buffer));
        TSMenuItem read;
        ASSERT_TRUE(read.Load(&buffer));
        ASSERT_EQ(ToText(read), ToText(item));
    }
}
