// The lines that the test console prints for signals.

#include <cstdint>
#include <thread>

#include "MainLoopWatch.h"
#include "TPMSScenario.h"
#include "Timeline.h"

namespace {

constexpr EProfile kPip = PROFILE_PIP;

class SignalLine : public TPMSScenario {
protected:
    void SetUp() override {
        Console fresh;
        fresh.type("99").run([this] { menus.Enter(); });
        callback = tv.lastCallback();
        ASSERT_NE(callback, nullptr);
        Timeline::now().clear();
    }
    // Calls the callback as it is; gives all that it wrote, flushes included, then its answer.
    std::string call(int type, EProfile profile, unsigned short screenId, std::uint64_t data,
                     void* userData = nullptr) {
        Console fresh;
        int result = -1;
        fresh.run([&] {
            result = callback(static_cast<ESignalType>(type), profile, screenId, {data}, userData);
        });
        EXPECT_LE(fresh.insertions().size(), 1U) << "a line is inserted once";
        return fresh.whole() + std::to_string(result);
    }

    NorvexSignalCallbackFunction callback = nullptr;
};

constexpr std::uint64_t kAllOnes = 0xffffffffffffffffULL;

} // namespace

TEST_F(SignalLine, TellsWhichServiceInformationHasStarted) {
    EXPECT_EQ(call(81, PROFILE_MAIN, 0, 0x0000'0007'0002'0001ULL),
              "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:1, srvProfile:2, "
              "chNumber:7\n{flush}0");
    EXPECT_EQ(call(81, kPip, 1, 0), "\tSIGNAL_SI_STARTED -> profile:101, screenId: 1, chType:0, "
                                    "srvProfile:0, chNumber:0\n{flush}0");
}

TEST_F(SignalLine, ReadsSignedFieldsOf16Bits) {
    EXPECT_EQ(call(81, PROFILE_MAIN, 0, kAllOnes),
              "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:-1, srvProfile:-1, "
              "chNumber:-1\n{flush}0");
    EXPECT_EQ(call(81, PROFILE_MAIN, 0, 0x0000'8000'7fff'8001ULL),
              "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:-32767, srvProfile:32767, "
              "chNumber:-32768\n{flush}0");
    EXPECT_EQ(call(81, PROFILE_MAIN, 0, 0x0000'0000'0000'ffffULL),
              "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:-1, srvProfile:0, "
              "chNumber:0\n{flush}0");
    EXPECT_EQ(call(81, PROFILE_MAIN, 0, 0x0000'0000'ffff'0000ULL),
              "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:0, srvProfile:-1, "
              "chNumber:0\n{flush}0");
    EXPECT_EQ(call(81, PROFILE_MAIN, 0, 0x0000'ffff'0000'0000ULL),
              "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:0, srvProfile:0, "
              "chNumber:-1\n{flush}0");
}

TEST_F(SignalLine, IgnoresTheHighest16BitsOfServiceInformation) {
    EXPECT_EQ(call(81, PROFILE_MAIN, 0, 0xffff'0000'0000'0000ULL),
              "\tSIGNAL_SI_STARTED -> profile:1, screenId: 0, chType:0, srvProfile:0, "
              "chNumber:0\n{flush}0");
}

TEST_F(SignalLine, TellsWhichServiceTuneAroundHasDone) {
    EXPECT_EQ(call(193, PROFILE_MAIN, 0, 0xfa00'0000'0002'002dULL),
              "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, serviceId: "
              "18014398509482115117\n{flush}0");
    EXPECT_EQ(call(193, PROFILE_MAIN, 1, 0),
              "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 1, serviceId: "
              "0\n{flush}0");
    EXPECT_EQ(call(193, PROFILE_MAIN, 0, kAllOnes),
              "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, serviceId: "
              "18446744073709551615\n{flush}0");
    EXPECT_EQ(call(193, PROFILE_MAIN, 0, 0x8000'0000'0000'0000ULL),
              "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, serviceId: "
              "9223372036854775808\n{flush}0");
}

// The wording is the wrong way round, as the testers know it.
TEST_F(SignalLine, SaysFalseForACompletedFlagThatIsSet) {
    const std::string line = "\tSIGNAL_TUNE_AROUND_FINISHED -> profile:1, screenId: 0, completed: ";
    EXPECT_EQ(call(194, PROFILE_MAIN, 0, 1), line + "false\n{flush}0");
    EXPECT_EQ(call(194, PROFILE_MAIN, 0, 0), line + "true\n{flush}0");
    EXPECT_EQ(call(194, PROFILE_MAIN, 0, kAllOnes), line + "false\n{flush}0");
    EXPECT_EQ(call(194, PROFILE_MAIN, 0, 0x8000), line + "false\n{flush}0");
    EXPECT_EQ(call(194, PROFILE_MAIN, 0, 0x0100), line + "false\n{flush}0");
    EXPECT_EQ(call(194, PROFILE_MAIN, 0, 0x1'0000), line + "true\n{flush}0");
    EXPECT_EQ(call(194, PROFILE_MAIN, 0, 0xffff'ffff'ffff'0000ULL), line + "true\n{flush}0");
}

TEST_F(SignalLine, TellsWhetherTheBarkerChannelWasTuned) {
    const std::string line = "\tSIGNAL_BARKER_CHANNEL_TUNE -> profile:1, screenId: 0, is success:";
    EXPECT_EQ(call(195, PROFILE_MAIN, 0, 1), line + "true\n{flush}0");
    EXPECT_EQ(call(195, PROFILE_MAIN, 0, 0), line + "false\n{flush}0");
    EXPECT_EQ(call(195, PROFILE_MAIN, 0, kAllOnes), line + "true\n{flush}0");
    EXPECT_EQ(call(195, PROFILE_MAIN, 0, 0x80), line + "true\n{flush}0");
    EXPECT_EQ(call(195, PROFILE_MAIN, 0, 0x100), line + "false\n{flush}0");
    EXPECT_EQ(call(195, PROFILE_MAIN, 0, 0xffff'ffff'ffff'ff00ULL), line + "false\n{flush}0");
}

TEST_F(SignalLine, WritesAnyProfileAndScreen) {
    const auto profile = [](std::int32_t number) { return static_cast<EProfile>(number); };
    EXPECT_EQ(call(194, profile(-1), 0xffff, 0),
              "\tSIGNAL_TUNE_AROUND_FINISHED -> profile:-1, screenId: 65535, completed: "
              "true\n{flush}0");
    EXPECT_EQ(call(195, profile(INT32_MIN), 0x8000, 0),
              "\tSIGNAL_BARKER_CHANNEL_TUNE -> profile:-2147483648, screenId: 32768, is "
              "success:false\n{flush}0");
    EXPECT_EQ(call(193, profile(INT32_MAX), 1, 5),
              "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:2147483647, screenId: 1, serviceId: "
              "5\n{flush}0");
    EXPECT_EQ(call(81, profile(401), 65535, 1),
              "\tSIGNAL_SI_STARTED -> profile:401, screenId: 65535, chType:1, srvProfile:0, "
              "chNumber:0\n{flush}0");
}

TEST_F(SignalLine, PrintsNothingForOtherSignals) {
    for (int type = -300; type <= 300; ++type) {
        if (type == 81 || type == 193 || type == 194 || type == 195)
            continue;
        EXPECT_EQ(call(type, PROFILE_MAIN, 0, kAllOnes), "0") << type;
    }
    for (const int type : {INT32_MIN, INT32_MAX, 81 + 256, 81 + 65536, 193 + 256, 195 - 65536})
        EXPECT_EQ(call(type, PROFILE_MAIN, 0, 1), "0") << type;
}

TEST_F(SignalLine, IgnoresItsUserData) {
    // An address that must not be read.
    void* const nowhere = reinterpret_cast<void*>(std::uintptr_t{8});
    EXPECT_EQ(call(194, PROFILE_MAIN, 0, 1, nowhere), call(194, PROFILE_MAIN, 0, 1, nullptr));
    EXPECT_EQ(call(5, PROFILE_MAIN, 0, 1, nowhere), "0");
}

TEST_F(SignalLine, IsPrintedOnTheThreadOfTheLoop) {
    MainLoopWatch::Delivery delivery;
    std::thread::id loopThread;
    console.meanwhile([&] {
        delivery = MainLoopWatch::deliver(SIGNAL_BARKER_CHANNEL_TUNE, kPip, 1, {1});
        loopThread = MainLoopWatch::runningThread();
    });
    console.type("99");
    enter();
    EXPECT_TRUE(delivery.called);
    EXPECT_EQ(delivery.result, 0);
    EXPECT_EQ(delivery.thread, loopThread);
    EXPECT_NE(delivery.thread, std::this_thread::get_id());
    EXPECT_EQ(console.dialogue(),
              kEntered + kMainMenu +
                  "cmd> \tSIGNAL_BARKER_CHANNEL_TUNE -> profile:101, screenId: 1, is "
                  "success:true\n{typed 99}" +
                  kLeft);
}

TEST_F(SignalLine, StandsInTheMiddleOfASubMenu) {
    tv.runWithin("AVControl.MuteVideo", [] {
        MainLoopWatch::deliver(SIGNAL_TUNE_AROUND_SERVICE_DONE, PROFILE_MAIN, 0, {42});
    });
    console.type("2 0 1");
    console.meanwhile([] {
        MainLoopWatch::deliver(SIGNAL_SI_STARTED, PROFILE_MAIN, 0, {0x0000'0003'0002'0001ULL});
    });
    console.type("1 99 0 99");
    enter();
    EXPECT_NE(console.dialogue().find(
                  "{typed 1}Off:0 / On:1 \tSIGNAL_SI_STARTED -> profile:1, screenId: 0, "
                  "chType:1, srvProfile:2, chNumber:3\n{typed 1}{AVControl.MuteVideo(1)}"
                  "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, serviceId: 42\n"
                  "===================================="),
              std::string::npos)
        << console.dialogue();
}

TEST_F(SignalLine, ComesForEachOfManySignals) {
    constexpr int kSignals = 200;
    std::string lines;
    for (int i = 0; i < kSignals; ++i) {
        console.meanwhile([i] {
            MainLoopWatch::deliver(SIGNAL_TUNE_AROUND_SERVICE_DONE, PROFILE_MAIN, 0,
                                   {static_cast<std::uint64_t>(i)});
        });
        lines += "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, serviceId: " +
                 std::to_string(i) + "\n";
    }
    console.type("99");
    enter();
    EXPECT_EQ(console.dialogue(), kEntered + kMainMenu + "cmd> " + lines + "{typed 99}" + kLeft);
}

// Nothing waits for the callback: its lines come while the menus are written.
TEST_F(SignalLine, IsNeitherLostNorBrokenWhileMenusAreWritten) {
    constexpr int kWords = 200;
    constexpr int kSignalsAWord = 5;
    bool delivered = false;
    for (int i = 0; i < kWords; ++i) {
        console.meanwhile([i] {
            for (int k = 0; k < kSignalsAWord; ++k) {
                MainLoopWatch::send(SIGNAL_TUNE_AROUND_SERVICE_DONE, PROFILE_MAIN, 0,
                                    {static_cast<std::uint64_t>(i * kSignalsAWord + k)});
            }
        });
        console.type("9");
    }
    console.meanwhile([&] { delivered = MainLoopWatch::waitUntilDelivered(); });
    console.type("99");
    enter();
    EXPECT_TRUE(delivered);

    int signals = 0;
    std::string menusAlone;
    for (const std::string& piece : console.insertions()) {
        if (piece.starts_with("\tSIGNAL")) {
            EXPECT_EQ(piece, "\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:1, screenId: 0, "
                             "serviceId: " +
                                 std::to_string(signals++) + "\n");
        } else {
            menusAlone += piece;
        }
    }
    EXPECT_EQ(signals, kWords * kSignalsAWord);
    std::string expected;
    for (int i = 0; i <= kWords; ++i)
        expected += kMainMenu + "cmd> ";
    EXPECT_EQ(menusAlone, expected);
}
