// The lines that the test console prints for signals.

#include <cstdint>
#include <thread>

#include "MainLoopWatch.h"
#include "TPMSScenario.h"

namespace {

class SignalLine : public TPMSScenario {
protected:
    void SetUp() override {
        console.Type("99");
        Enter();
        callback = tv.GetLastCallback();
        ASSERT_NE(callback, nullptr);
    }
    // Calls the callback as it is; gives all that it wrote, flushes included, then its answer.
    std::string Call(int type, EProfile profile, unsigned short screenId, std::uint64_t data,
                     void* userData = nullptr) {
        int result = -1;
        Run("", [&] { result = callback(static_cast<ESignalType>(type), profile, screenId, {data}, userData); });
        EXPECT_LE(Timeline::Now().Insertions().size(), 1U) << "a line is inserted once";
        return console.Whole() + std::to_string(result);
    }
    // The line for a signal of the main pipeline.
    std::string Shown(int type, std::uint64_t data) { return Call(type, PROFILE_MAIN, 0, data); }

public:
    NorvexSignalCallbackFunction callback = nullptr;
};

constexpr std::uint64_t kAllOnes = 0xffffffffffffffffULL;
const char kServiceDone[] = "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, "
                            "serviceId: ";

} // namespace

TEST_F(SignalLine, ShowsThreeSignedFieldsOf16BitsOfTheServiceInformation) {
    const auto line = [](const std::string& type, const std::string& profile, const std::string& number) {
        return "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:" + type + ", srvProfile:" + profile +
               ", chNumber:" + number + "\n{flush}0";
    };
    EXPECT_EQ(Shown(81, 0), line("0", "0", "0"));
    EXPECT_EQ(Shown(81, 0x0000'0007'0002'0001ULL), line("1", "2", "7"));
    EXPECT_EQ(Shown(81, kAllOnes), line("-1", "-1", "-1"));
    EXPECT_EQ(Shown(81, 0x0000'8000'7fff'8001ULL), line("-32767", "32767", "-32768"));
    EXPECT_EQ(Shown(81, 0x0000'0000'0000'ffffULL), line("-1", "0", "0"));
    EXPECT_EQ(Shown(81, 0x0000'0000'ffff'0000ULL), line("0", "-1", "0"));
    EXPECT_EQ(Shown(81, 0x0000'ffff'0000'0000ULL), line("0", "0", "-1"));
    EXPECT_EQ(Shown(81, 0xffff'0000'0000'0000ULL), line("0", "0", "0")) << "the rest is ignored";
}

TEST_F(SignalLine, ShowsWhichServiceTuneAroundHasDone) {
    const std::string line = kServiceDone;
    EXPECT_EQ(Shown(193, 0xfa00'0000'0002'002dULL), line + "18014398509482115117\n{flush}0");
    EXPECT_EQ(Shown(193, 0), line + "0\n{flush}0");
    EXPECT_EQ(Shown(193, kAllOnes), line + "18446744073709551615\n{flush}0");
    EXPECT_EQ(Shown(193, 0x8000'0000'0000'0000ULL), line + "9223372036854775808\n{flush}0");
}

// The wording is the wrong way round, as the testers know it.
TEST_F(SignalLine, SaysFalseForACompletedFlagThatIsSet) {
    const std::string line = "\tSIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: ";
    for (const std::uint64_t data : {std::uint64_t{1}, kAllOnes, std::uint64_t{0x8000}, std::uint64_t{0x0100}})
        EXPECT_EQ(Shown(194, data), line + "false\n{flush}0") << data;
    for (const std::uint64_t data : {0ULL, 0x1'0000ULL, 0xffff'ffff'ffff'0000ULL})
        EXPECT_EQ(Shown(194, data), line + "true\n{flush}0") << data;
}

TEST_F(SignalLine, ShowsWhetherTheBarkerChannelWasTuned) {
    const std::string line = "\tSIGNAL_BARKER_CHANNEL_TUNE -> profile:1, screenId: 0, is success:";
    for (const std::uint64_t data : {std::uint64_t{1}, kAllOnes, std::uint64_t{0x80}})
        EXPECT_EQ(Shown(195, data), line + "true\n{flush}0") << data;
    for (const std::uint64_t data : {0ULL, 0x100ULL, 0xffff'ffff'ffff'ff00ULL})
        EXPECT_EQ(Shown(195, data), line + "false\n{flush}0") << data;
}

TEST_F(SignalLine, WritesAnyProfileAndScreen) {
    const auto profile = [](std::int32_t number) { return static_cast<EProfile>(number); };
    EXPECT_EQ(Call(194, profile(-1), 0xffff, 0),
              "\tSIGNAL_TUNE_AROUND_FINISHED -> profile:-1, screenId: 65535, completed: "
              "true\n{flush}0");
    EXPECT_EQ(Call(195, profile(INT32_MIN), 0x8000, 0),
              "\tSIGNAL_BARKER_CHANNEL_TUNE -> profile:-2147483648, screenId: 32768, is "
              "success:false\n{flush}0");
    EXPECT_EQ(Call(193, profile(INT32_MAX), 1, 5),
              "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:2147483647, screenId: 1, serviceId: "
              "5\n{flush}0");
    EXPECT_EQ(Call(81, profile(401), 65535, 1),
              "\tSIGNAL_SI_STARTED -> profile:401, screenId: 65535, chType:1, srvProfile:0, "
              "chNumber:0\n{flush}0");
}

TEST_F(SignalLine, PrintsNothingForOtherSignals) {
    for (int type = -300; type <= 300; ++type) {
        if (type != 81 && (type < 193 || type > 195)) {
            EXPECT_EQ(Shown(type, kAllOnes), "0") << type;
        }
    }
    for (const int type : {INT32_MIN, INT32_MAX, 81 + 256, 81 + 65536, 193 + 256, 195 - 65536})
        EXPECT_EQ(Shown(type, 1), "0") << type;
}

TEST_F(SignalLine, IgnoresItsUserData) {
    // An address that must not be read.
    void* const nowhere = reinterpret_cast<void*>(std::uintptr_t{8});
    EXPECT_EQ(Call(194, PROFILE_MAIN, 0, 1, nowhere), Shown(194, 1));
    EXPECT_EQ(Call(5, PROFILE_MAIN, 0, 1, nowhere), "0");
}

TEST_F(SignalLine, IsPrintedOnTheThreadOfTheLoop) {
    MainLoopWatch::Delivery delivery;
    std::thread::id loopThread;
    console.Meanwhile([&] {
        delivery = MainLoopWatch::Deliver({SIGNAL_BARKER_CHANNEL_TUNE, PROFILE_PIP, 1, {1}});
        loopThread = MainLoopWatch::GetRunningThread();
    });
    console.Type("99");
    EXPECT_EQ(Enter(), kEntered + kMainMenu +
                           "cmd> \tSIGNAL_BARKER_CHANNEL_TUNE -> profile:101, screenId: 1, is "
                           "success:true\n<99>" +
                           kLeft);
    EXPECT_TRUE(delivery.called);
    EXPECT_EQ(delivery.result, 0);
    EXPECT_EQ(delivery.thread, loopThread);
    EXPECT_NE(delivery.thread, std::this_thread::get_id());
}

TEST_F(SignalLine, StandsInTheMiddleOfASubMenu) {
    tv.RunWithin("AVControl.MuteVideo", [] {
        MainLoopWatch::Deliver({SIGNAL_TUNE_AROUND_SERVICE_DONE, PROFILE_MAIN, 0, {42}});
    });
    console.Type("2 0 1");
    console.Meanwhile([] { MainLoopWatch::Deliver({SIGNAL_SI_STARTED, PROFILE_MAIN, 0, {0x0000'0003'0002'0001ULL}}); });
    console.Type("1").Type(kMute.leave);
    EXPECT_EQ(VisitTyped(kMute), "{menu}<1>Off:0 / On:1 \tSIGNAL_SI_STARTED -> profile:1, "
                                 "screenId: 0, chType:1, srvProfile:2, chNumber:3\n<1>"
                                 "{AVControl.MuteVideo(1)}" +
                                     std::string(kServiceDone) + "42\n");
}

TEST_F(SignalLine, ComesForEachOfManySignals) {
    std::string lines;
    for (unsigned i = 0; i < 200; ++i) {
        console.Meanwhile([i] { MainLoopWatch::Deliver({SIGNAL_TUNE_AROUND_SERVICE_DONE, PROFILE_MAIN, 0, {i}}); });
        lines += kServiceDone + std::to_string(i) + "\n";
    }
    console.Type("99");
    EXPECT_EQ(Enter(), kEntered + kMainMenu + "cmd> " + lines + "<99>" + kLeft);
}

// Nothing waits for the callback: its lines come while the menus are written.
TEST_F(SignalLine, IsNeitherLostNorBrokenWhileMenusAreWritten) {
    constexpr unsigned kWords = 200;
    constexpr unsigned kSignalsPerWord = 5;
    bool delivered = false;
    std::string expectedMenus = kMainMenu + "cmd> ";
    for (unsigned i = 0; i < kWords; ++i) {
        console.Meanwhile([i] {
            for (unsigned k = 0; k < kSignalsPerWord; ++k) {
                MainLoopWatch::Send({SIGNAL_TUNE_AROUND_SERVICE_DONE, PROFILE_MAIN, 0, {i * kSignalsPerWord + k}});
            }
        });
        console.Type("9");
        expectedMenus += kMainMenu + "cmd> ";
    }
    console.Meanwhile([&] { delivered = MainLoopWatch::WaitUntilDelivered(); });
    console.Type("99");
    Enter();
    EXPECT_TRUE(delivered);

    unsigned signals = 0;
    std::string otherPieces;
    for (const std::string& piece : Timeline::Now().Insertions()) {
        if (piece.starts_with("\tSIGNAL"))
            EXPECT_EQ(piece, kServiceDone + std::to_string(signals++) + "\n");
        else
            otherPieces += piece;
    }
    EXPECT_EQ(signals, kWords * kSignalsPerWord);
    EXPECT_EQ(otherPieces, expectedMenus);
}
