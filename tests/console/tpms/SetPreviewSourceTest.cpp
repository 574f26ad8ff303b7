// Item 16: the preview source.

#include "ServiceCalls.h"
#include "TPMSScenario.h"

namespace {

class SetPreviewSource : public TPMSScenario {
protected:
    std::string Visit(const std::string& words) { return TPMSScenario::Visit(kPreviewSource, words); }
};

// A command and its source; a channel for command 2.
std::string Source(const std::string& command, const std::string& source) {
    return "{menu}<" + command + ">Enter ESource (TV=0, HDMI1=13)> <" + source + ">";
}
std::string Channel(const std::string& source, const std::string& channel) {
    return Source("2", source) + "Enter major (int)> <" + channel + ">";
}
std::string Called(const std::string& arguments) {
    return "{CreateSourceControl(1, 0)}{SourceControl.SetPreviewSource(" + arguments +
           ", \"\")}{Destroy(SourceControl)}";
}
const std::string kSucceeded = "Succesfully called SetPreviewSource, ret=1\n";

} // namespace

TEST_F(SetPreviewSource, TakesSourcesFrom0To47InEverySpelling) {
    std::string words;
    std::string expected;
    for (int number = 0; number <= 47; ++number) {
        const std::string source = std::to_string(number);
        words += "1 " + source + " ";
        expected += Source("1", source) + Called(source) + kSucceeded;
    }
    for (const std::string& word : SpellingsOf("1")) {
        words += word + " " + word + " ";
        expected += Source(word, word) + Called("1") + kSucceeded;
    }
    EXPECT_EQ(Visit(words), expected);
}

TEST_F(SetPreviewSource, RefusesSourcesOutsideOf0To47) {
    const std::pair<std::string, std::string> sources[] = {
        {"48", "48"},    {"-2", "-2"},       {"100", "100"}, {"2147483647", "2147483647"},
        {"+048x", "48"}, {"65549", "65549"}, {"256", "256"}, {"-2147483648", "-2147483648"}};
    std::string words;
    std::string expected;
    for (const auto& [word, number] : sources) {
        for (const std::string command : {"1", "2"}) {
            words += command + " " + word + " ";
            expected += Source(command, word) + "Invalid source " + number + ". Valid values (0, 47)\n";
        }
    }
    EXPECT_EQ(Visit(words), expected);
}

TEST_F(SetPreviewSource, GoesBackSilentlyForASourceOrAChannelThatIsNoNumber) {
    std::string words;
    std::string expected;
    for (const std::string& word : kNoNumbers) {
        words += "1 " + word + " 2 " + word + " 2 0 " + word + " ";
        expected += Source("1", word) + Source("2", word) + Channel("0", word);
    }
    EXPECT_EQ(Visit(words), expected);
}

TEST_F(SetPreviewSource, TakesOnlyAnAnswerOf1ForSuccess) {
    std::string expected;
    for (const int answer : {2, 0, -1, 2147483647}) {
        tv.Answer("SourceControl.SetPreviewSource", {answer});
        expected += Source("1", "0") + Called("0") + "Fail to SetPreviewSource, ret=" + std::to_string(answer) + "\n";
    }
    EXPECT_EQ(Visit("1 0 1 0 1 0 1 0"), expected);
}

TEST_F(SetPreviewSource, SwitchesToAService) {
    tv.GiveFound({{{12, -16}}});
    tv.GiveFound({{{12, 1}}});
    tv.Answer("SourceControl.SetPreviewSource", {1, -2147483647});
    EXPECT_EQ(Visit("2 13 7 2 0 8"), Channel("13", "7") + FindOnAntenna("0", "0", "7") +
                                         Called("13, 0xfffffffffffffff0") + kSucceeded + Channel("0", "8") +
                                         FindOnAntenna("0", "0", "8") + Called("0, 0x0000000000000001") +
                                         "Fail to SetPreviewSource, ret=-2147483647\n");
}

// The look-up's words and the channel stand on one line. The channel is shown as a number, and its
// low 16 bits are looked for.
TEST_F(SetPreviewSource, ShowsWhichChannelDoesNotExist) {
    const std::pair<std::string, std::string> channels[] = {{"7", "7"}, {"-2", "65534"}, {"65535", "65535"}};
    for (const auto& [word, major] : channels) {
        EXPECT_EQ(Visit("2 0 " + word), Channel("0", word) + FindOnAntenna("0", "0", major, "FindService failed") +
                                            " for major=" + word + "\n");
    }
    EXPECT_NE(console.Transcript().find("FindService failed for major=65535\n"), std::string::npos);
    tv.GiveFound({{{13, 7}}});
    EXPECT_EQ(Visit("2 0 +065543x"),
              Channel("0", "+065543x") + FindOnAntenna("0", "0", "7", MissingTag(" 12")) + " for major=65543\n");
}
