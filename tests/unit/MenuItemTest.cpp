#include <cstdint>
#include <random>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <zarn/MenuItem.h>

#include "FakeTree.h"

namespace {

TSMenuItem makeItem(const std::string& name, bool state, unsigned int id) {
    TSMenuItem item;
    item.setName(name);
    item.setState(state);
    item.setID(id);
    return item;
}

} // namespace

TEST(MenuItem, BeginsNamelessOffAndWithIdZero) {
    const TSMenuItem item;
    EXPECT_EQ(item.getName(), "");
    EXPECT_FALSE(item.getState());
    EXPECT_EQ(item.getID(), 0u);
}

TEST(MenuItem, TakesNameStateAndId) {
    const TSMenuItem item = makeItem("Pipeline", true, 4294967295u);
    EXPECT_EQ(item.getName(), "Pipeline");
    EXPECT_TRUE(item.getState());
    EXPECT_EQ(item.getID(), 4294967295u);
}

TEST(MenuItem, CopiesAndMovesKeepNameStateAndId) {
    const TSMenuItem item = makeItem("Pipeline", true, 7);
    TSMenuItem copy(item);
    TSMenuItem assigned;
    assigned = item;
    TSMenuItem moved(std::move(copy));
    TSMenuItem moveAssigned;
    moveAssigned = std::move(assigned);
    for (const TSMenuItem& each : {item, moved, moveAssigned}) {
        EXPECT_EQ(each.getName(), "Pipeline");
        EXPECT_TRUE(each.getState());
        EXPECT_EQ(each.getID(), 7u);
    }
}

TEST(MenuItem, NameIsCopied) {
    std::string name = "first";
    TSMenuItem item;
    item.setName(name);
    name = "second";
    EXPECT_EQ(item.getName(), "first");
}

TEST(MenuItem, CopyCarriesNameStateAndId) {
    const TSMenuItem item = makeItem("Tuner", true, 42);
    const TSMenuItem copy(item);
    EXPECT_EQ(copy.getName(), "Tuner");
    EXPECT_TRUE(copy.getState());
    EXPECT_EQ(copy.getID(), 42u);

    TSMenuItem assigned = makeItem("other", false, 1);
    assigned = item;
    EXPECT_EQ(assigned.getName(), "Tuner");
    EXPECT_TRUE(assigned.getState());
    EXPECT_EQ(assigned.getID(), 42u);
}

TEST(MenuItem, CopyIsIndependent) {
    TSMenuItem item = makeItem("Tuner", true, 42);
    const TSMenuItem copy(item);
    item.setName("changed");
    item.setState(false);
    item.setID(1);
    EXPECT_EQ(copy.getName(), "Tuner");
    EXPECT_TRUE(copy.getState());
    EXPECT_EQ(copy.getID(), 42u);
}

TEST(MenuItem, IsSinglyDerivedFromTheLibrarysBase) {
    static_assert(std::is_base_of_v<TCMarshalable, TSMenuItem>);
    TSMenuItem item;
    EXPECT_EQ(static_cast<void*>(static_cast<TIMarshalable*>(&item)), static_cast<void*>(&item));
}

TEST(MenuItem, WritesNameStateAndIdUnderTags0To2) {
    TSMenuItem item = makeItem("abc", true, 0x01020304u);
    FakeBranch branch;
    EXPECT_TRUE(item.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch), "{0={0=value 03000000, 1=bytes \"abc\"}, 1=value 01, "
                                          "2=value 04030201}");
}

TEST(MenuItem, EmptyNameTravelsAsLengthZeroAlone) {
    TSMenuItem item;
    FakeBranch branch;
    EXPECT_TRUE(item.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch), "{0={0=value 00000000}, 1=value 00, 2=value 00000000}");

    TSMenuItem read;
    EXPECT_TRUE(read.TreeToClass(branch));
    EXPECT_EQ(read.getName(), "");
}

TEST(MenuItem, NameWithAZeroByteArrivesWhole) {
    const std::string name("a\0b\0", 4);
    TSMenuItem item = makeItem(name, false, 1);
    FakeBranch branch;
    ASSERT_TRUE(item.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch),
              "{0={0=value 04000000, 1=bytes \"a\\x00b\\x00\"}, 1=value 00, 2=value 01000000}");

    TSMenuItem read;
    ASSERT_TRUE(read.TreeToClass(branch));
    EXPECT_EQ(read.getName(), name);
    EXPECT_EQ(read.getName().size(), 4u);
}

TEST(MenuItem, ReadsEachFieldFromItsTag) {
    FakeBranch branch;
    branch.becomeItem("Scan", true, 77);
    TSMenuItem item;
    EXPECT_TRUE(item.TreeToClass(branch));
    EXPECT_EQ(item.getName(), "Scan");
    EXPECT_TRUE(item.getState());
    EXPECT_EQ(item.getID(), 77u);
}

TEST(MenuItem, ReadsTheFieldsInAnyOrderOfChildren) {
    FakeBranch branch;
    branch.value(2, FakeTree::raw(9)).value(1, FakeTree::raw(true)).text(0, "last");
    TSMenuItem item;
    EXPECT_TRUE(item.TreeToClass(branch));
    EXPECT_EQ(item.getName(), "last");
    EXPECT_TRUE(item.getState());
    EXPECT_EQ(item.getID(), 9u);
}

TEST(MenuItem, StateCanBeReadAsOff) {
    FakeBranch branch;
    branch.becomeItem("Scan", false, 3);
    TSMenuItem item = makeItem("", true, 0);
    EXPECT_TRUE(item.TreeToClass(branch));
    EXPECT_FALSE(item.getState());
}

TEST(MenuItem, MissingChildrenLeaveTheirFields) {
    FakeBranch branch;
    branch.value(1, FakeTree::raw(false));
    TSMenuItem item = makeItem("kept", true, 5);
    EXPECT_TRUE(item.TreeToClass(branch));
    EXPECT_EQ(item.getName(), "kept");
    EXPECT_FALSE(item.getState());
    EXPECT_EQ(item.getID(), 5u);
}

TEST(MenuItem, EmptyNameInTheTreeLeavesTheOldName) {
    FakeBranch branch;
    branch.becomeItem("", true, 5);
    TSMenuItem item = makeItem("kept", false, 0);
    EXPECT_TRUE(item.TreeToClass(branch));
    EXPECT_EQ(item.getName(), "kept");
    EXPECT_EQ(item.getID(), 5u);
}

TEST(MenuItem, AnyByteButZeroIsOn) {
    FakeBranch branch;
    branch.value(1, "\x02");
    TSMenuItem item;
    EXPECT_TRUE(item.TreeToClass(branch));
    EXPECT_TRUE(item.getState());
}

TEST(MenuItem, WritingAnswersWhatTheFormatterAnswers) {
    TSMenuItem item = makeItem("a", true, 1);
    FakeBranch branch;
    branch.refuse();
    EXPECT_FALSE(item.ClassToTree(branch));
}

TEST(MenuItem, ReadingAnswersWhatTheFormatterAnswers) {
    FakeBranch branch;
    branch.becomeItem("a", true, 1).refuse();
    TSMenuItem item;
    EXPECT_FALSE(item.TreeToClass(branch));
    EXPECT_EQ(item.getID(), 1u) << "what was read stands";
}

TEST(MenuItem, HasTheLibrarysDefaultsForTheRest) {
    TCMarshalable plain;
    TSMenuItem item;
    EXPECT_EQ(item.GetMarshalableStorageType(), plain.GetMarshalableStorageType());
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
        TSMenuItem item = makeItem(name, (random() & 1) != 0, static_cast<unsigned int>(random()));
        FakeBranch branch;
        ASSERT_TRUE(item.ClassToTree(branch));
        TSMenuItem read;
        ASSERT_TRUE(read.TreeToClass(branch));
        ASSERT_EQ(read.getName(), item.getName());
        ASSERT_EQ(read.getState(), item.getState());
        ASSERT_EQ(read.getID(), item.getID());
    }
}
