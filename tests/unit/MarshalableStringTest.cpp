#include "MarshalableString.h"

#include <climits>

#include <gtest/gtest.h>

#include "CoreWatch.h"
#include "Timeline.h"
#include "Tree.h"

namespace {

std::string WrittenText(std::string text) {
    TCMarshalableString wrapper(&text);
    return Written(wrapper);
}

// What `before` becomes when it is read from a tree; "refused, " stands before it on failure.
std::string ReadText(const Tree& tree, std::string before) {
    TCMarshalableString wrapper(&before);
    return ReadFrom(wrapper, tree) ? before : "refused, " + before;
}

struct Asserted {};

class NullString : public testing::Test {
protected:
    void SetUp() override {
        Timeline::Now().Clear();
        CoreWatch::OnAssert([] { throw Asserted{}; });
    }
    void TearDown() override { CoreWatch::Reset(); }
    static std::vector<std::string> Assertion(const std::string& line) {
        return {"_TCApiAssert(m_data, norvex-api-internal/MarshalableString, " + line + ", null)"};
    }

public:
    TCMarshalableString wrapper{nullptr};
};

} // namespace

TEST(MarshalableString, WritesItsLengthAndThenItsBytes) {
    EXPECT_EQ(WrittenText("abc"), "{0=value 03000000, 1=bytes \"abc\"}");
    EXPECT_EQ(WrittenText(std::string(258, 'x')), "{0=value 02010000, 1=bytes \"" + std::string(258, 'x') + "\"}");
    EXPECT_EQ(WrittenText(""), "{0=value 00000000}") << "an empty text is its length alone";
    EXPECT_EQ(WrittenText(std::string("\0a\0", 3)), "{0=value 03000000, 1=bytes \"\\x00a\\x00\"}")
        << "zero bytes travel and no terminator is added";
}

TEST(MarshalableString, ReadingReplacesTheText) {
    const std::string text("n\0w", 3);
    EXPECT_EQ(ReadText(Tree::OfText(text), "something older and longer"), text);
}

TEST(MarshalableString, ReadingAnEmptyTextOrNothingLeavesTheOldOne) {
    EXPECT_EQ(ReadText(Tree::OfText(""), "the last screen"), "the last screen");
    EXPECT_EQ(ReadText(Tree::OfText(""), ""), "");
    EXPECT_EQ(ReadText(Tree(), "kept"), "kept");
}

TEST(MarshalableString, LongTextArrivesWhole) {
    std::string sent(300000, '\0');
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i] = static_cast<char>(i * 7);
    EXPECT_EQ(ReadText(Tree::OfText(sent), ""), sent);
    EXPECT_EQ(WrittenText(std::string(300000, 'x')).size(), 300000 + WrittenText("x").size() - 1);
}

TEST(MarshalableString, LongTextArrivesWholeFromBranchesWithoutSizes) {
    CoreWatch::HideSizesOfBranches();
    EXPECT_EQ(ReadText(Tree::OfText(std::string(70000, 'x')), ""), std::string(70000, 'x'));
    CoreWatch::Reset();
}

TEST(MarshalableString, LengthOfAnotherSizeIsNotTaken) {
    EXPECT_EQ(ReadText(Tree().ValueBytes(0, "\x01").Array(1, "x"), "kept"), "refused, kept");
}

TEST(MarshalableString, LengthThatNothingStandsBehindDoesNoHarm) {
    for (const int length : {-1, INT_MIN, INT_MAX, 70000000, 65537, 65536, 4, 2})
        EXPECT_EQ(ReadText(Tree().Value(0, length).Array(1, "abc"), "kept"), "refused, kept");
}

TEST(MarshalableString, ResultsAreTheFormatters) {
    std::string text = "abc";
    TCMarshalableString wrapper(&text);
    EXPECT_FALSE(WriteToRefusingBranch(wrapper));
    text.clear();
    EXPECT_FALSE(WriteToRefusingBranch(wrapper));
}

TEST(MarshalableString, HasTheSizeOfItsText) {
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
    std::string text;
    EXPECT_EQ(TCMarshalableString(&text).GetMarshalableStorageType(), TCMarshalable().GetMarshalableStorageType());
}

TEST_F(NullString, HasNoSize) {
    unsigned long size = 99;
    EXPECT_FALSE(wrapper.GetSizeOfMarshalled(size));
    EXPECT_EQ(size, 99u);
    EXPECT_TRUE(Timeline::Now().Calls().empty());
}

TEST_F(NullString, WritingIsReportedWithLine72) {
    EXPECT_THROW(Written(wrapper), Asserted);
    EXPECT_EQ(Timeline::Now().Calls(), Assertion("72"));
}

TEST_F(NullString, ReadingIsReportedWithLine93) {
    EXPECT_THROW(ReadFrom(wrapper, Tree::OfText("abc")), Asserted);
    EXPECT_EQ(Timeline::Now().Calls(), Assertion("93"));
}

using NullStringDeathTest = NullString;

// It is a bug of the caller's, and not survived.
TEST_F(NullStringDeathTest, IsUsedAllTheSameAfterTheReport) {
    CoreWatch::OnAssert(nullptr);
    EXPECT_DEATH(Written(wrapper), "");
    EXPECT_DEATH(ReadFrom(wrapper, Tree::OfText("abc")), "");
}

TEST_F(NullString, ATextThatIsThereIsNotReported) {
    EXPECT_EQ(WrittenText("abc"), "{0=value 03000000, 1=bytes \"abc\"}");
    EXPECT_EQ(ReadText(Tree::OfText("abc"), ""), "abc");
    EXPECT_TRUE(Timeline::Now().Calls().empty());
}
