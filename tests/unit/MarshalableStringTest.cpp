#include <climits>

#include <gtest/gtest.h>

#include "FakeCore.h"
#include "FakeTree.h"
#include "MarshalableString.h"
#include "Timeline.h"

namespace {

std::string written(std::string text) {
    TCMarshalableString wrapper(&text);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    return FakeTree::describe(branch);
}

struct Asserted {};

class NullString : public testing::Test {
protected:
    void SetUp() override {
        Timeline::now().clear();
        FakeCore::onAssert([] { throw Asserted{}; });
    }
    void TearDown() override { FakeCore::reset(); }
};

} // namespace

TEST(MarshalableString, WritesItsLengthAndThenItsBytes) {
    EXPECT_EQ(written("abc"), "{0=value 03000000, 1=bytes \"abc\"}");
    EXPECT_EQ(written(std::string(258, 'x')),
              "{0=value 02010000, 1=bytes \"" + std::string(258, 'x') + "\"}");
}

TEST(MarshalableString, EmptyTextIsItsLengthAlone) {
    EXPECT_EQ(written(""), "{0=value 00000000}");
}

TEST(MarshalableString, ZeroBytesTravelAndNoTerminatorIsAdded) {
    EXPECT_EQ(written(std::string("\0a\0", 3)), "{0=value 03000000, 1=bytes \"\\x00a\\x00\"}");
}

TEST(MarshalableString, ReadingReplacesTheText) {
    FakeBranch branch;
    branch.becomeText(std::string("n\0w", 3));
    std::string text = "something older and longer";
    TCMarshalableString wrapper(&text);
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_EQ(text, std::string("n\0w", 3));
}

TEST(MarshalableString, ReadingAnEmptyTextLeavesTheOldOne) {
    FakeBranch branch;
    branch.becomeText("");
    std::string text = "the last screen";
    TCMarshalableString wrapper(&text);
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_EQ(text, "the last screen");
    std::string empty;
    TCMarshalableString emptyWrapper(&empty);
    EXPECT_TRUE(emptyWrapper.TreeToClass(branch));
    EXPECT_EQ(empty, "");
}

TEST(MarshalableString, ReadingABranchWithoutChildrenLeavesTheText) {
    FakeBranch branch;
    std::string text = "kept";
    TCMarshalableString wrapper(&text);
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_EQ(text, "kept");
}

TEST(MarshalableString, LongTextArrivesWhole) {
    std::string sent(300000, '\0');
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i] = static_cast<char>(i * 7);
    TCMarshalableString sender(&sent);
    FakeBranch branch;
    ASSERT_TRUE(sender.ClassToTree(branch));
    std::string received;
    TCMarshalableString receiver(&received);
    EXPECT_TRUE(receiver.TreeToClass(branch));
    EXPECT_EQ(received, sent);
}

TEST(MarshalableString, LengthOfAnotherSizeIsNotTaken) {
    FakeBranch branch;
    branch.value(0, "\x01").bytes(1, "x");
    std::string text = "kept";
    TCMarshalableString wrapper(&text);
    EXPECT_FALSE(wrapper.TreeToClass(branch));
    EXPECT_EQ(text, "kept");
}

TEST(MarshalableString, LengthThatNothingStandsBehindDoesNoHarm) {
    for (const int length : {-1, INT_MIN, INT_MAX, 70000000}) {
        FakeBranch branch;
        branch.value(0, FakeTree::raw(length)).bytes(1, "abc");
        std::string text = "kept";
        TCMarshalableString wrapper(&text);
        EXPECT_FALSE(wrapper.TreeToClass(branch)) << length;
        EXPECT_EQ(text, "kept") << length;
    }
}

TEST(MarshalableString, ResultsAreTheFormatters) {
    std::string text = "abc";
    TCMarshalableString wrapper(&text);
    FakeBranch out;
    out.refuse();
    EXPECT_FALSE(wrapper.ClassToTree(out));
    FakeBranch in;
    in.becomeText("new").refuse();
    EXPECT_FALSE(wrapper.TreeToClass(in));
    EXPECT_EQ(text, "new") << "what was read stands";
    FakeBranch empty;
    empty.becomeText("").refuse();
    EXPECT_FALSE(wrapper.TreeToClass(empty));
}

TEST(MarshalableString, TellsTheSizeOfItsText) {
    std::string text("ab\0d", 4);
    TCMarshalableString wrapper(&text);
    unsigned long size = 99;
    EXPECT_TRUE(wrapper.GetSizeOfMarshalled(size));
    EXPECT_EQ(size, 4u);
    text.clear();
    EXPECT_TRUE(wrapper.GetSizeOfMarshalled(size));
    EXPECT_EQ(size, 0u);
}

TEST(MarshalableString, LeavesTheStringToItsOwner) {
    std::string text = "mine";
    { TCMarshalableString wrapper(&text); }
    EXPECT_EQ(text, "mine");
}

TEST(MarshalableString, HasTheLibrarysStorageType) {
    TCMarshalable plain;
    std::string text;
    TCMarshalableString wrapper(&text);
    EXPECT_EQ(wrapper.GetMarshalableStorageType(), plain.GetMarshalableStorageType());
}

TEST_F(NullString, HasNoSize) {
    TCMarshalableString wrapper(nullptr);
    unsigned long size = 99;
    EXPECT_FALSE(wrapper.GetSizeOfMarshalled(size));
    EXPECT_EQ(size, 99u);
    EXPECT_TRUE(Timeline::now().calls().empty());
}

TEST_F(NullString, WritingIsReportedWithLine72) {
    TCMarshalableString wrapper(nullptr);
    FakeBranch branch;
    EXPECT_THROW(wrapper.ClassToTree(branch), Asserted);
    EXPECT_EQ(Timeline::now().calls(),
              std::vector<std::string>{
                  "_TCApiAssert(m_data, norvex-api-internal/MarshalableString, 72, null)"});
}

TEST_F(NullString, ReadingIsReportedWithLine93) {
    TCMarshalableString wrapper(nullptr);
    FakeBranch branch;
    branch.becomeText("abc");
    EXPECT_THROW(wrapper.TreeToClass(branch), Asserted);
    EXPECT_EQ(Timeline::now().calls(),
              std::vector<std::string>{
                  "_TCApiAssert(m_data, norvex-api-internal/MarshalableString, 93, null)"});
}

using NullStringDeathTest = NullString;

// It is a bug of the caller's, and not survived.
TEST_F(NullStringDeathTest, IsUsedAllTheSameAfterTheReport) {
    FakeCore::onAssert(nullptr);
    TCMarshalableString wrapper(nullptr);
    FakeBranch branch;
    branch.becomeText("abc");
    EXPECT_DEATH(wrapper.ClassToTree(branch), "");
    EXPECT_DEATH(wrapper.TreeToClass(branch), "");
}

TEST_F(NullString, ATextThatIsThereIsNotReported) {
    std::string text = "abc";
    TCMarshalableString wrapper(&text);
    FakeBranch branch;
    EXPECT_TRUE(wrapper.ClassToTree(branch));
    EXPECT_TRUE(wrapper.TreeToClass(branch));
    EXPECT_TRUE(Timeline::now().calls().empty());
}
