// How the test console reads numbers, and its questions for a pipeline.

#include "FakeDevice.h"
#include "TPMSScenario.h"

namespace {

class UserInput : public TPMSScenario {
protected:
    // The answer of m_StrToInt; a number that is not ok stands in brackets.
    std::string Read(const std::string& text) {
        bool ok = false;
        bool other = true;
        const int number = menus.m_StrToInt(text, &ok);
        EXPECT_EQ(menus.m_StrToInt(text, &other), number);
        EXPECT_EQ(ok, other);
        EXPECT_EQ(menus.m_StrToInt(text, nullptr), number);
        return ok ? std::to_string(number) : "(" + std::to_string(number) + ")";
    }
    // The whole time line of one question, then its answer.
    std::string Select(const std::string& words, const std::string& prompt = "cmd> ") {
        int number = 0;
        Run(words, [&] { number = menus.m_SelectCmd(prompt); });
        return console.Whole() + std::to_string(number);
    }
    // Asks for a pipeline; gives the dialogue, then the handle.
    std::string AskPipeline(const std::string& words, bool askProfile) {
        NorvexHandle handle{static_cast<EProfile>(77), 88};
        const std::string dialogue = Run(words, [&] { menus.m_GetNorvexHandleByUserInput(&handle, askProfile); });
        return dialogue + std::to_string(handle.profile) + "/" + std::to_string(handle.screenId);
    }
};

const std::string kScreen = "Input ScreenId. Main:0, MLS:1 > ";
const std::string kProfile = "Input Profile. Main:0, PIP:1 , Analysis:2 > ";

// "word=answer word=answer", apart.
std::vector<std::pair<std::string, std::string>> Pairs(const std::string& text) {
    std::vector<std::pair<std::string, std::string>> pairs;
    std::istringstream in(text);
    for (std::string pair; in >> pair;)
        pairs.emplace_back(pair.substr(0, pair.find('=')), pair.substr(pair.find('=') + 1));
    return pairs;
}

} // namespace

TEST_F(UserInput, ReadsTheNumberOf32BitsThatAWordBeginsWith) {
    EXPECT_EQ(Read("5 6"), "5");
    EXPECT_EQ(Read(" \t\n 12"), "12");
    const auto answers = Pairs("0=0 7=7 099=99 +99=99 -5=-5 -0=0 12abc=12 0x10=0 1e3=1 1.9=1 1,000=1 "
                               "2147483647=2147483647 -2147483648=-2147483648 2147483648=(2147483647) "
                               "-2147483649=(-2147483648) 99999999999999999999999=(2147483647) "
                               "-99999999999999999999999=(-2147483648) 4294967295=(2147483647)");
    for (const auto& [word, number] : answers)
        EXPECT_EQ(Read(word), number) << word;
    for (const std::string word : {"", " ", "abc", "x1", "-", "+", "--5", "+-5", "- 5", ".5", "_1"})
        EXPECT_EQ(Read(word), "(0)") << word;
}

TEST_F(UserInput, PromptsWithTheTextAsGivenAndFlushes) {
    EXPECT_EQ(Select("12", "cmd> "), "cmd> {flush}<12>12");
    EXPECT_EQ(Select("-2", " select num> "), " select num> {flush}<-2>-2");
    EXPECT_EQ(Select("3", "a\nb"), "a\nb{flush}<3>3");
}

TEST_F(UserInput, SelectsMinusOneForWordsThatAreNoNumbersAndWithoutInput) {
    for (const std::string& word : kNoNumbers)
        EXPECT_EQ(Select(word), "cmd> {flush}<" + word + ">-1");
    console.EndInput(1, "never");
    EXPECT_EQ(Select(""), "cmd> {flush}<end of input>-1");
    console.BreakInput(1, "never");
    EXPECT_EQ(Select(""), "cmd> {flush}<broken input>-1");
}

TEST_F(UserInput, AsksForAnyScreenTruncatedTo16Bits) {
    const auto screens = Pairs("0=0 1=1 7=7 007=7 +7=7 7abc=7 010=10 abc=0 0x10=0 -=0 65535=65535 65536=0 65537=1 "
                               "-1=65535 -65535=1 4294967297=1 99999999999999999999=65535 "
                               "-99999999999999999999=0");
    for (const auto& [word, screen] : screens) {
        EXPECT_EQ(AskPipeline(word, false),
                  kScreen + "<" + word + ">User Input : screenId:" + screen + " profile:1\n1/" + screen);
    }
    EXPECT_TRUE(console.Whole().ends_with(" profile:1\n{flush}"));
}

// That the prompt offers 2 for the analysis profile while 3 selects it is known to the testers.
TEST_F(UserInput, TakesTheMainProfileForEveryAnswerBut1And3) {
    const auto profiles = Pairs("0=1 1=101 2=1 3=401 4=1 101=1 401=1 -1=1 abc=1 01=101 +1=101 1abc=101 0x1=1 +3=401 "
                                "003=401 3.9=401 -3=1 13=1 4294967297=1 4294967299=1 65537=1 65539=1 "
                                "99999999999999999999=1");
    for (const auto& [word, profile] : profiles) {
        EXPECT_EQ(AskPipeline("1 " + word, true), kScreen + "<1>" + kProfile + "<" + word +
                                                      ">User Input : screenId:1 profile:" + profile + "\n" + profile +
                                                      "/1");
    }
}

TEST_F(UserInput, TakesTheMainPipelineAtTheEndOfInput) {
    console.EndInput(1, "never");
    EXPECT_EQ(AskPipeline("", true), kScreen + "<end of input>" + kProfile + "User Input : screenId:0 profile:1\n1/0");
}

TEST_F(UserInput, HandsTheStoresAnswerOn) {
    int value = 5;
    EXPECT_EQ(menus.m_GetVconfInt("db/a", &value), -1);
    EXPECT_EQ(value, 5);
    FakeDevice::SetVconf("db/a", 17);
    EXPECT_EQ(menus.m_GetVconfInt("db/a", &value), 0);
    EXPECT_EQ(value, 17);
    EXPECT_EQ(console.Dialogue(), "{vconf_get_int(db/a)}{vconf_get_int(db/a)}");
}
