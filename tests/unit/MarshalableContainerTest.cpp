#include <memory>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <norvex/core/NodeCreator.h>
#include <zarn/MenuItem.h>

#include "FakeTree.h"
#include "MarshalableOneDimensionContainer.h"
#include "ScriptedCreator.h"

namespace {

using Items = std::vector<TSMenuItem>;
using Wrapper = TCMarshalableOneDimensionContainer<Items, TSMenuItem>;
using Notes = std::vector<std::string>;

TSMenuItem makeItem(const std::string& name, bool state, unsigned int id) {
    TSMenuItem item;
    item.setName(name);
    item.setState(state);
    item.setID(id);
    return item;
}

Items named(const std::vector<std::string>& names) {
    Items items;
    for (const std::string& name : names)
        items.push_back(makeItem(name, false, 0));
    return items;
}

} // namespace

TEST(MarshalableContainer, ThreeItemsBecomeThreeChildrenInTheirOrder) {
    Items items{makeItem("one", true, 1), makeItem("", false, 2), makeItem("three", true, 3)};
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch),
              "{0={0={0=value 03000000, 1=bytes \"one\"}, 1=value 01, 2=value 01000000}, "
              "1={0={0=value 00000000}, 1=value 00, 2=value 02000000}, "
              "2={0={0=value 05000000, 1=bytes \"three\"}, 1=value 01, 2=value 03000000}}");

    Items read = named({"old1", "old2", "old3", "old4", "old5"});
    Wrapper reader(&read, new TCMarshalableNodeCreator, false);
    EXPECT_TRUE(reader.TreeToClass(branch));
    ASSERT_EQ(read.size(), 3u) << "the old five are gone";
    EXPECT_EQ(read[0].getName(), "one");
    EXPECT_TRUE(read[0].getState());
    EXPECT_EQ(read[0].getID(), 1u);
    EXPECT_EQ(read[1].getName(), "");
    EXPECT_FALSE(read[1].getState());
    EXPECT_EQ(read[1].getID(), 2u);
    EXPECT_EQ(read[2].getName(), "three");
    EXPECT_TRUE(read[2].getState());
    EXPECT_EQ(read[2].getID(), 3u);
}

TEST(MarshalableContainer, EmptyVectorBecomesABranchWithoutChildren) {
    Items items;
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch), "{}");
}

TEST(MarshalableContainer, BranchWithoutChildrenEmptiesTheVector) {
    Items items = named({"a", "b"});
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_TRUE(items.empty());
}

TEST(MarshalableContainer, ChildThatCannotBeReadStillYieldsAnItem) {
    FakeBranch branch;
    branch.item("good", true, 1).value(1, "no branch").item("better", true, 2);
    Items items;
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].getName(), "good");
    EXPECT_EQ(items[1].getName(), "");
    EXPECT_FALSE(items[1].getState());
    EXPECT_EQ(items[1].getID(), 0u);
    EXPECT_EQ(items[2].getName(), "better");
}

TEST(MarshalableContainer, ItemKeepsWhatAFailedFillLeftInIt) {
    ScriptedCreator::Script script;
    script.fills = false;
    FakeBranch branch;
    branch.item("x", true, 9);
    Items items;
    Wrapper wrapper(&items, new ScriptedCreator(script), false);
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    ASSERT_EQ(items.size(), 1u);
    EXPECT_NE(items[0].getID(), 0u) << "the scripted creator puts a number there";
}

TEST(MarshalableContainer, EachElementStartsFromADefaultItem) {
    FakeBranch branch;
    branch.item("first", true, 1).branch(-1, new FakeBranch).item("", false, 3);
    Items items;
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[1].getName(), "");
    EXPECT_FALSE(items[1].getState());
    EXPECT_EQ(items[1].getID(), 0u);
    EXPECT_EQ(items[2].getName(), "");
}

TEST(MarshalableContainer, AsksTheCreatorForOneNodeAnElement) {
    ScriptedCreator::Script script;
    Items items = named({"a", "b"});
    {
        Wrapper wrapper(&items, new ScriptedCreator(script), false);
        EXPECT_EQ(script.notes, Notes{"kind"}) << "asked while it is made";
        FakeBranch branch;
        EXPECT_TRUE(wrapper.ClassToTree(branch));
        EXPECT_EQ(FakeTree::describe(branch), "{0={0=value 01000000, 1=bytes \"a\"}, "
                                              "1={0=value 01000000, 1=bytes \"b\"}}");
    }
    EXPECT_EQ(script.notes,
              (Notes{"kind", "create a, 1 item, -1, 1", "create b, 1 item, -1, 1", "deleted"}));
    EXPECT_EQ(items.size(), 2u);
}

TEST(MarshalableContainer, ElementWithoutANodeIsLeftOutSilently) {
    ScriptedCreator::Script script;
    script.noNodeFor = {"b"};
    Items items = named({"a", "b", "c"});
    Wrapper wrapper(&items, new ScriptedCreator(script), false);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch), "{0={0=value 01000000, 1=bytes \"a\"}, "
                                          "1={0=value 01000000, 1=bytes \"c\"}}");
}

TEST(MarshalableContainer, FillsOneElementAChildWhereNodesCarryNoCount) {
    ScriptedCreator::Script script;
    FakeBranch branch;
    branch.value(0, std::string(3 * sizeof(TSMenuItem), 'x')).value(1, "");
    Items items;
    Wrapper wrapper(&items, new ScriptedCreator(script), false);
    script.notes.clear();
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    ASSERT_EQ(items.size(), 2u);
    ASSERT_GE(script.notes.size(), 2u);
    EXPECT_EQ(script.notes[script.notes.size() - 2].substr(0, 23), "fill 1 item, 1 item, va");
    EXPECT_EQ(script.notes[script.notes.size() - 1].substr(0, 23), "fill 1 item, 1 item, va");
}

TEST(MarshalableContainer, FillsAsManyElementsAsANodeCounts) {
    ScriptedCreator::Script script;
    script.counted = true;
    FakeBranch branch;
    // No child reaches beyond one item's memory: the scripted creator only notes the count.
    branch.value(0, std::string(3 * sizeof(TSMenuItem), 'x')).value(1, "x");
    Items items;
    Wrapper wrapper(&items, new ScriptedCreator(script), false);
    script.notes.clear();
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_EQ(items.size(), 2u) << "each child yields one element";
    ASSERT_GE(script.notes.size(), 2u);
    EXPECT_EQ(script.notes[script.notes.size() - 2].substr(0, 21), "fill 1 item, 3 item, ");
    EXPECT_EQ(script.notes[script.notes.size() - 1].substr(0, 21), "fill 1 item, 0 item, ");
}

TEST(MarshalableContainer, KindsSevenAndEightReleaseTheOldElementsFrontToBack) {
    for (const int kind : {7, 8}) {
        ScriptedCreator::Script script;
        script.kind = kind;
        Items items = named({"a", "b", "c"});
        {
            Wrapper wrapper(&items, new ScriptedCreator(script), false);
            FakeBranch branch;
            script.notes.clear();
            EXPECT_TRUE(wrapper.TreeToClass(branch));
            EXPECT_TRUE(items.empty());
        }
        EXPECT_EQ(script.notes, (Notes{"kind", "release a", "release b", "release c", "deleted"}))
            << kind;
    }
}

TEST(MarshalableContainer, OtherKindsReleaseNothing) {
    for (const int kind : {-1, 0, 1, 2, 6, 9, 78}) {
        ScriptedCreator::Script script;
        script.kind = kind;
        Items items = named({"a"});
        {
            Wrapper wrapper(&items, new ScriptedCreator(script), true);
            FakeBranch branch;
            script.notes.clear();
            EXPECT_TRUE(wrapper.TreeToClass(branch));
            EXPECT_TRUE(items.empty());
        }
        for (const std::string& note : script.notes)
            EXPECT_EQ(note.find("release"), std::string::npos) << kind;
    }
}

TEST(MarshalableContainer, ClearOnDestroyEmptiesTheVectorBeforeTheCreatorGoes) {
    ScriptedCreator::Script script;
    script.kind = 7;
    Items items = named({"a", "b"});
    {
        Wrapper wrapper(&items, new ScriptedCreator(script), true);
        script.notes.clear();
    }
    EXPECT_TRUE(items.empty());
    EXPECT_EQ(script.notes, (Notes{"kind", "release a", "release b", "deleted"}));
}

TEST(MarshalableContainer, WithoutClearOnDestroyTheVectorStays) {
    ScriptedCreator::Script script;
    script.kind = 7;
    Items items = named({"a", "b"});
    {
        Wrapper wrapper(&items, new ScriptedCreator(script), false);
        script.notes.clear();
    }
    EXPECT_EQ(items.size(), 2u);
    EXPECT_EQ(script.notes, Notes{"deleted"});
}

TEST(MarshalableContainer, WithoutAVectorNothingIsDone) {
    for (const bool clearOnDestroy : {false, true}) {
        ScriptedCreator::Script script;
        script.kind = 7;
        {
            Wrapper wrapper(nullptr, new ScriptedCreator(script), clearOnDestroy);
            FakeBranch branch;
            branch.item("a", true, 1);
            EXPECT_TRUE(wrapper.ClassToTree(branch));
            EXPECT_TRUE(wrapper.TreeToClass(branch));
            EXPECT_EQ(FakeTree::describe(branch),
                      "{0={0={0=value 01000000, 1=bytes \"a\"}, 1=value 01, 2=value 01000000}}");
        }
        EXPECT_EQ(script.notes, (Notes{"kind", "deleted"}));
    }
}

TEST(MarshalableContainer, EmptyingKeepsTheCapacity) {
    Items items = named({"a", "b", "c", "d", "e", "f", "g"});
    const std::size_t capacity = items.capacity();
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_EQ(items.capacity(), capacity);
}

TEST(MarshalableContainer, StorageTypeIsOne) {
    Items items;
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    EXPECT_EQ(wrapper.GetMarshalableStorageType(), 1);
}

TEST(MarshalableContainer, MenuItemsNeverTravelInBulk) {
    // A creator of plain values; its kind has no effect on menu items.
    ScriptedCreator::Script script;
    script.kind = 0;
    Items items = named({"a"});
    Wrapper wrapper(&items, new ScriptedCreator(script), false);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch), "{0={0=value 01000000, 1=bytes \"a\"}}");
}

TEST(MarshalableContainer, ResultsAreAlwaysTrue) {
    Items items = named({"a"});
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    FakeBranch branch;
    branch.refuse();
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    EXPECT_TRUE(wrapper.TreeToClass(branch));
}

TEST(MarshalableContainer, RandomVectorsComeBackAsTheyWere) {
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        Items items;
        for (std::size_t i = random() % 30; i > 0; --i) {
            items.push_back(makeItem(std::string(random() % 20, static_cast<char>(random() & 0xff)),
                                     (random() & 1) != 0, static_cast<unsigned int>(random())));
        }
        Wrapper writer(&items, new TCMarshalableNodeCreator, false);
        FakeBranch branch;
        ASSERT_TRUE(writer.ClassToTree(branch));
        Items read = named({"old"});
        Wrapper reader(&read, new TCMarshalableNodeCreator, false);
        ASSERT_TRUE(reader.TreeToClass(branch));
        ASSERT_EQ(read.size(), items.size());
        for (std::size_t i = 0; i < items.size(); ++i) {
            ASSERT_EQ(read[i].getName(), items[i].getName());
            ASSERT_EQ(read[i].getState(), items[i].getState());
            ASSERT_EQ(read[i].getID(), items[i].getID());
        }
    }
}

// Plain values travel as one block.

namespace {

struct Point {
    short x;
    short y;
};
using Points = std::vector<Point>;
using PointWrapper = TCMarshalableOneDimensionContainer<Points, Point>;

} // namespace

TEST(MarshalableContainer, PlainValuesAreOneLeafWithAllBytes) {
    Points points{{1, 2}, {3, -1}};
    PointWrapper wrapper(&points, new DefaultNodeCreator, false);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch), "{0=var 010002000300ffff}");

    Points read{{9, 9}, {9, 9}, {9, 9}};
    PointWrapper reader(&read, new DefaultNodeCreator, false);
    EXPECT_TRUE(reader.TreeToClass(branch));
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0].x, 1);
    EXPECT_EQ(read[0].y, 2);
    EXPECT_EQ(read[1].x, 3);
    EXPECT_EQ(read[1].y, -1);
}

TEST(MarshalableContainer, NoPlainValuesAreNoLeaf) {
    Points points;
    PointWrapper wrapper(&points, new DefaultNodeCreator, false);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    EXPECT_EQ(FakeTree::describe(branch), "{}");
    points = {{1, 1}};
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_TRUE(points.empty()) << "emptied before the block is looked for";
}

TEST(MarshalableContainer, BlockIsReadInWholeElementsFromTheFirstChildAlone) {
    FakeBranch branch;
    branch.value(0, std::string("\x01\0\x02\0\x03\0\x04", 7)).value(1, std::string(8, 'x'));
    Points points;
    PointWrapper wrapper(&points, new DefaultNodeCreator, false);
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    ASSERT_EQ(points.size(), 1u);
    EXPECT_EQ(points[0].x, 1);
    EXPECT_EQ(points[0].y, 2);
}

TEST(MarshalableContainer, BlockShorterThanAnElementYieldsNone) {
    FakeBranch branch;
    branch.value(0, "abc");
    Points points{{1, 1}};
    PointWrapper wrapper(&points, new DefaultNodeCreator, false);
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_TRUE(points.empty());
}
