// All of the plug-in's objects together, with fakes of everything else: what tests of the parts do
// not show.

#include <gtest/gtest.h>
#include <zarn/DebugMenu.h>

#include "Console.h"
#include "FakeConnection.h"
#include "FakeDevice.h"
#include "FakeNorvexAPI.h"
#include "Screens.h"

using FakeConnection::Answer;
using FakeConnection::Reply;

namespace {

class WholeConsole : public testing::Test {
protected:
    // No file of the device is there.
    WholeConsole() { FakeDevice::SetDirectory("/nonexistent"); }
    ~WholeConsole() override { FakeConnection::Reset(); }

    // Runs the console; gives its transcript with the screens' names.
    std::string Run(const std::string& words) {
        console.Type(words).Run(zarn_startmaindebug);
        EXPECT_EQ(console.CountWordsLeft(), 0u);
        EXPECT_EQ(tv.GetKept(), std::vector<std::string>{});
        EXPECT_EQ(FakeConnection::CountAlive(), 1) << "all menus share one control";
        return screens::Abbreviated(console.Transcript(), {{screens::kProcessMenu + "\ncmd> ", "{menu}"},
                                                           {screens::kMediaMenu + "\ncmd> ", "{media}"},
                                                           {screens::kTestConsole + "\ncmd> ", "{test console}"},
                                                           {screens::ProviderList("OFF"), "{list off}"}});
    }

public:
    FakeNorvexAPI tv;
    Console console;
};

} // namespace

TEST_F(WholeConsole, GoesThroughEachMenuAndBack) {
    Answer("Start", Reply().Value(1).Text("Norvex> "));
    Answer("Execute", Reply().Value(1).Text("Again> "));
    Answer("Execute", Reply().Value(0));
    Answer("IsQoSEnabled", Reply().Value(true));
    Answer("GetMenuItems", Reply().Value(1).Items({{"Tuner", false, 3}}));
    Answer("GetMenuItems", Reply().Value(1).Items({{"Tuner", true, 3}}));
    tv.Answer("TunerControl.CheckTunerSignalState", {1});
    const auto simple = [](const std::string& row) { return screens::SimpleMenu("QoS is enabled\n", row) + "cmd> "; };
    EXPECT_EQ(Run("1 items 99 2 3 11 99 4 99 5 10 99 6 7 0 99 5 9 99 99"),
              "DebugUtil\n{menu}Norvex> Again> {menu}Command not implemented\n{menu}{media}11\n"
              " The input is invalid!! \n{media}99\nCommand not implemented\n{menu}{list off}{menu}"
              "{test console} CheckTunerSignalState Success!\n{test console}{menu}{menu}" +
                  simple("0 : [OFF] Tuner            \n") + "0" + simple("0 : [ON ] Tuner            \n") +
                  "99{menu}{test console}{test console}{menu}");
}
