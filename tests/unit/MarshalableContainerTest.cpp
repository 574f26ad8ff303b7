#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>
#include <norvex/core/MessageBuffer.h>
#include <norvex/core/NodeCreator.h>

#include "MarshalableOneDimensionContainer.h"
#include "TestItems.h"
#include "Tree.h"

namespace {

using Items = std::vector<TSMenuItem>;
using Wrapper = TCMarshalableOneDimensionContainer<Items, TSMenuItem>;
using Notes = std::vector<std::string>;

Items Named(const std::vector<std::string>& names) {
    Items items;
    for (const std::string& name : names)
        items.push_back(MakeItem(name, false, 0));
    return items;
}

// A node creator that notes what it is asked, in order. Elements are menu items; in the notes they
// are called by their names.
class ScriptedCreator : public TINodeCreator {
public:
    // Shared with the test, which outlives the creator.
    struct Script {
        int kind = 1;
        bool counted = false;
        // Items of these names get no node.
        std::set<std::string> noNodeFor;
        Notes notes;
    };

    explicit ScriptedCreator(Script& script) : m_script(script) {}
    ~ScriptedCreator() override { Note("deleted"); }
    int GetKind() override {
        Note("kind");
        return m_script.kind;
    }
    bool HasElementCount() override { return m_script.counted; }
    void ReleaseElement(void* element) override { Note("release " + NameOf(element)); }
    TCTreeNode* CreateNode(void* element, int elementSize, int tag, int count) override {
        const std::string name = NameOf(element);
        Note("create " + name + ", " + Elements(elementSize) + ", " + std::to_string(tag) + ", " +
             std::to_string(count));
        if (m_script.noNodeFor.contains(name))
            return nullptr;
        return new TCTreeLeafVar(tag, static_cast<int>(name.size()), name.data());
    }
    // Fails, and leaves a number in the element.
    bool FillElement(void* element, int elementSize, int byteCount, TCTreeNode* node) override {
        Note("fill " + Elements(elementSize) + ", " + Elements(byteCount) + ", " + std::to_string(node->GetTag()));
        static_cast<TSMenuItem*>(element)->setID(7);
        return false;
    }

private:
    void Note(const std::string& note) { m_script.notes.push_back(note); }
    static std::string NameOf(void* element) { return static_cast<TSMenuItem*>(element)->getName(); }
    // The size of an element is the compiler's affair; what matters is which multiple of it is
    // given.
    static std::string Elements(int bytes) {
        const int size = sizeof(TSMenuItem);
        return bytes % size == 0 ? std::to_string(bytes / size) + " item" : std::to_string(bytes) + " bytes";
    }

    Script& m_script;
};

// What a container of `before` holds after it was read from a tree, which always works.
std::string ReadItems(const Tree& tree, Items before = {}) {
    Wrapper wrapper(&before, new TCMarshalableNodeCreator, false);
    EXPECT_TRUE(ReadFrom(wrapper, tree));
    return ToText(before);
}

} // namespace

TEST(MarshalableContainer, ThreeItemsBecomeThreeChildrenInTheirOrder) {
    Items items{MakeItem("one", true, 1), MakeItem("", false, 2), MakeItem("three", true, 3)};
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    EXPECT_EQ(Written(wrapper), "{0={0={0=value 03000000, 1=bytes \"one\"}, 1=value 01, 2=value 01000000}, "
                                "1={0={0=value 00000000}, 1=value 00, 2=value 02000000}, "
                                "2={0={0=value 05000000, 1=bytes \"three\"}, 1=value 01, 2=value 03000000}}");
    items.clear();
    EXPECT_EQ(Written(wrapper), "{}");
}

TEST(MarshalableContainer, ReadingReplacesTheItems) {
    EXPECT_EQ(ReadItems(Tree()
                            .Branch(0, Tree::OfItem("one", true, 1))
                            .Branch(1, Tree::OfItem("", false, 2))
                            .Branch(2, Tree::OfItem("three", true, 3)),
                        Named({"old1", "old2", "old3", "old4", "old5"})),
              "one on 1,  off 2, three on 3");
    EXPECT_EQ(ReadItems(Tree(), Named({"a", "b"})), "");
}

TEST(MarshalableContainer, ChildThatCannotBeReadStillYieldsAnItem) {
    EXPECT_EQ(ReadItems(Tree()
                            .Branch(0, Tree::OfItem("good", true, 1))
                            .ValueBytes(1, "no branch")
                            .Branch(2, Tree::OfItem("better", true, 2))),
              "good on 1,  off 0, better on 2");
}

TEST(MarshalableContainer, ItemKeepsWhatAFailedFillLeftInIt) {
    ScriptedCreator::Script script;
    Items items;
    Wrapper wrapper(&items, new ScriptedCreator(script), false);
    EXPECT_TRUE(ReadFrom(wrapper, Tree().Branch(0, Tree::OfItem("x", true, 9))));
    EXPECT_EQ(ToText(items), " off 7");
}

TEST(MarshalableContainer, EachElementStartsFromADefaultItem) {
    EXPECT_EQ(
        ReadItems(
            Tree().Branch(0, Tree::OfItem("first", true, 1)).Branch(1, Tree()).Branch(2, Tree::OfItem("", false, 3))),
        "first on 1,  off 0,  off 3");
}

TEST(MarshalableContainer, AsksTheCreatorForOneNodePerElement) {
    ScriptedCreator::Script script;
    Items items = Named({"a", "b"});
    {
        Wrapper wrapper(&items, new ScriptedCreator(script), false);
        EXPECT_EQ(script.notes, Notes{"kind"}) << "asked while it is made";
        EXPECT_EQ(Written(wrapper), "{0=bytes \"a\", 1=bytes \"b\"}");
    }
    EXPECT_EQ(script.notes, (Notes{"kind", "create a, 1 item, -1, 1", "create b, 1 item, -1, 1", "deleted"}));
    EXPECT_EQ(items.size(), 2u);
}

TEST(MarshalableContainer, ElementWithoutANodeIsLeftOutSilently) {
    ScriptedCreator::Script script;
    script.noNodeFor = {"b"};
    Items items = Named({"a", "b", "c"});
    Wrapper wrapper(&items, new ScriptedCreator(script), false);
    EXPECT_EQ(Written(wrapper), "{0=bytes \"a\", 1=bytes \"c\"}");
}

TEST(MarshalableContainer, FillsOneElementPerChildAsLongAsItsNodeCounts) {
    const Tree tree = Tree().ValueBytes(0, std::string(3 * sizeof(TSMenuItem), 'x')).ValueBytes(1, "x");
    for (const bool counted : {false, true}) {
        ScriptedCreator::Script script;
        script.counted = counted;
        Items items;
        {
            Wrapper wrapper(&items, new ScriptedCreator(script), false);
            EXPECT_TRUE(ReadFrom(wrapper, tree));
        }
        EXPECT_EQ(items.size(), 2u);
        EXPECT_EQ(script.notes,
                  counted ? (Notes{"kind", "kind", "fill 1 item, 3 item, 0", "fill 1 item, 0 item, 1", "deleted"})
                          : (Notes{"kind", "kind", "fill 1 item, 1 item, 0", "fill 1 item, 1 item, 1", "deleted"}));
    }
}

TEST(MarshalableContainer, KindsSevenAndEightReleaseTheOldElementsFrontToBack) {
    for (const int kind : {7, 8, -1, 0, 1, 2, 6, 9, 78}) {
        ScriptedCreator::Script script;
        script.kind = kind;
        Items items = Named({"a", "b", "c"});
        {
            Wrapper wrapper(&items, new ScriptedCreator(script), false);
            script.notes.clear();
            EXPECT_TRUE(ReadFrom(wrapper, Tree()));
            EXPECT_TRUE(items.empty());
        }
        EXPECT_EQ(script.notes, kind == 7 || kind == 8
                                    ? (Notes{"kind", "release a", "release b", "release c", "deleted"})
                                    : (Notes{"kind", "deleted"}))
            << kind;
    }
}

TEST(MarshalableContainer, ClearOnDestroyEmptiesTheVectorBeforeTheCreatorGoes) {
    for (const bool clearOnDestroy : {false, true}) {
        ScriptedCreator::Script script;
        script.kind = 7;
        Items items = Named({"a", "b"});
        {
            Wrapper wrapper(&items, new ScriptedCreator(script), clearOnDestroy);
            script.notes.clear();
        }
        EXPECT_EQ(items.empty(), clearOnDestroy);
        EXPECT_EQ(script.notes,
                  clearOnDestroy ? (Notes{"kind", "release a", "release b", "deleted"}) : Notes{"deleted"});
    }
}

TEST(MarshalableContainer, WithoutAVectorNothingIsDone) {
    for (const bool clearOnDestroy : {false, true}) {
        ScriptedCreator::Script script;
        script.kind = 7;
        {
            Wrapper wrapper(nullptr, new ScriptedCreator(script), clearOnDestroy);
            EXPECT_EQ(Written(wrapper), "{}");
            EXPECT_TRUE(ReadFrom(wrapper, Tree().Branch(0, Tree::OfItem("a", true, 1))));
        }
        EXPECT_EQ(script.notes, (Notes{"kind", "deleted"}));
    }
}

TEST(MarshalableContainer, EmptyingKeepsTheCapacity) {
    Items items = Named({"a", "b", "c", "d", "e", "f", "g"});
    const std::size_t capacity = items.capacity();
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    EXPECT_TRUE(ReadFrom(wrapper, Tree()));
    EXPECT_EQ(items.capacity(), capacity);
}

TEST(MarshalableContainer, StorageTypeIsOne) {
    Items items;
    EXPECT_EQ(Wrapper(&items, new TCMarshalableNodeCreator, false).GetMarshalableStorageType(), 1);
}

TEST(MarshalableContainer, MenuItemsNeverTravelInBulk) {
    // A creator of plain values; its kind has no effect on menu items.
    ScriptedCreator::Script script;
    script.kind = 0;
    Items items = Named({"a"});
    Wrapper wrapper(&items, new ScriptedCreator(script), false);
    EXPECT_EQ(Written(wrapper), "{0=bytes \"a\"}");
}

TEST(MarshalableContainer, WritingToABranchThatTakesNothingIsTrue) {
    Items items = Named({"a"});
    Wrapper wrapper(&items, new TCMarshalableNodeCreator, false);
    EXPECT_TRUE(WriteToRefusingBranch(wrapper));
}

TEST(MarshalableContainer, RandomVectorsComeBackAsTheyWere) {
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        Items items;
        for (std::size_t i = random() % 30; i > 0; --i) {
            items.push_back(MakeItem(std::string(random() % 20, static_cast<char>(random() & 0xff)),
                                     (random() & 1) != 0, static_cast<unsigned int>(random())));
        }
        Wrapper writer(&items, new TCMarshalableNodeCreator, false);
        TCMessageBuffer buffer;
        ASSERT_TRUE(writer.Store(&buffer));
        Items read = Named({"old"});
        Wrapper reader(&read, new TCMarshalableNodeCreator, false);
        ASSERT_TRUE(reader.Load(&buffer));
        ASSERT_EQ(ToText(read), ToText(items));
    }
}

// Plain values travel as one block.

namespace {

struct Point {
    short x;
    short y;
    bool operator==(const Point& other) const = default;
};
using Points = std::vector<Point>;
using PointWrapper = TCMarshalableOneDimensionContainer<Points, Point>;

Points ReadPoints(const Tree& tree, Points before) {
    PointWrapper wrapper(&before, new DefaultNodeCreator, false);
    EXPECT_TRUE(ReadFrom(wrapper, tree));
    return before;
}

} // namespace

TEST(MarshalableContainer, PlainValuesAreOneLeafWithAllBytes) {
    Points points{{1, 2}, {3, -1}};
    PointWrapper wrapper(&points, new DefaultNodeCreator, false);
    EXPECT_EQ(Written(wrapper), "{0=bytes \"\\x01\\x00\\x02\\x00\\x03\\x00\\xff\\xff\"}");
    const Tree tree = Tree().Array(0, std::string("\x01\0\x02\0\x03\0\xff\xff", 8));
    EXPECT_EQ(ReadPoints(tree, {{9, 9}, {9, 9}, {9, 9}}), points);
    points.clear();
    EXPECT_EQ(Written(wrapper), "{}");
}

TEST(MarshalableContainer, BlockIsReadInWholeElementsFromTheFirstChildAlone) {
    const Tree tree = Tree().Array(0, std::string("\x01\0\x02\0\x03\0\x04", 7)).Array(1, std::string(8, 'x'));
    EXPECT_EQ(ReadPoints(tree, {}), (Points{{1, 2}}));
}

TEST(MarshalableContainer, NoBlockAndOneShorterThanAnElementYieldNone) {
    EXPECT_EQ(ReadPoints(Tree(), {{1, 1}}), Points{}) << "emptied before the block is looked for";
    EXPECT_EQ(ReadPoints(Tree().Array(0, "abc"), {{1, 1}}), Points{});
}
