#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

namespace {

const std::string kMenu = "====================================\n"
                          "\t[Test14 List - SetTvMode with ServiceId Test]\t\n"
                          " RF case:    \n"
                          " 1.  SetTvMode(Air, ch) \n"
                          " 2.  SetTvMode(Cable, ch) \n"
                          " 3.  SetTvMode(Satellite, ch) \n"
                          " VC case:    \n"
                          " 4.  SetTvMode(Air, ch) \n"
                          " 5.  SetTvMode(Cable, ch) \n"
                          " 6.  SetTvMode(Satellite, ch) \n"
                          "------------------------------------\n"
                          " 99 : Exit\n"
                          "====================================\n"
                          "\n";

// From the empty record on: it is read before it is filled.
Acts tuned(const Acts& conditions, const std::string& antenna) {
    Acts acts = {
        create("nav", "ServiceNavigation", "1, 0"),
        create("service", "Service", ""),
        call("$nav.GetTvMode({-1, -1})", "mode"),
        script("tv mode"),
        choose("mode", {{"mode read", {kAboveZero}, {}},
                        {"mode not read", {}, {set("serviceMode", "-1")}}}),
        // 60 and more are the fake's modes for the profiles.
        choose("serviceMode",
               {{"profile 0", {"0"}, {set("serviceProfile", "0"), set("newMode", "60")}},
                {"profile 2", {}, {set("serviceProfile", "2"), set("newMode", "62")}}}),
        note("ServiceProfileToServiceMode($serviceProfile)"),
        note("CriteriaHelper.Where(3, $serviceProfile)"),
        note("CriteriaHelper.Where(23, 1)"),
        note("CriteriaHelper.Where(25, 0)"),
        note("CriteriaHelper.Where(13, $major)"),
        note("CriteriaHelper.Fetch(12)"),
        script("fresh record"),
        run(readServiceId),
    };
    acts.insert(acts.end(), conditions.begin(), conditions.end());
    const Acts rest = {
        script("found record"),
        call("$service.FindService(true, 1)", "found"),
        choose("found", {{"found",
                          {kAboveZero},
                          {run(readServiceId),
                           call("$nav.SetTvMode({" + antenna + ", $newMode}, $#id, \"\")"),
                           choose("ret", {{"TV mode set", {kAboveZero}, {}},
                                          {"TV mode not set", {}, {say(" SetTVMode failed!")}}})}},
                         {"not found", {}, {say("FindService failed")}}}),
        note("~ServiceData"),
        note("~CriteriaHelper"),
        destroy("service"),
        destroy("nav"),
    };
    acts.insert(acts.end(), rest.begin(), rest.end());
    return acts;
}

// 40 and more are the fake's channel types of the antennas.
Row broadcast(const std::string& number, const std::string& antenna) {
    return {number,
            {number},
            tuned({note("AntennaModeToDigitalChannelType(" + antenna + ")"),
                   note("CriteriaHelper.Where(1, 4" + antenna + ")")},
                  antenna)};
}

Row virtualChannel(const std::string& number, const std::string& antenna) {
    return {number,
            {number},
            tuned({note("CriteriaHelper.Where(1, 9)"),
                   note("CriteriaHelper.Where(115, " + antenna + ")")},
                  antenna)};
}

} // namespace

const Table& setTvMode() {
    static const Table table = {
        "set TV mode",
        {
            loop({
                say(kMenu),
                ask("cmd> ", "n", Form::Command),
                choose("n", {{"no number", {"-1"}, {again()}}, {"a number", {}, {}}}),
                // Asked for whatever the command is, the one that leaves included.
                ask("major> ", "major", Form::Channel),
                choose("major", {{"no channel", {"65535"}, {again()}}, {"a channel", {}, {}}}),
                choose("n", {broadcast("1", "0"),
                             broadcast("2", "1"),
                             broadcast("3", "2"),
                             virtualChannel("4", "0"),
                             virtualChannel("5", "1"),
                             virtualChannel("6", "2"),
                             {"99", {"99"}, {leave()}},
                             {"any other", {}, {leave()}}}),
            }),
        }};
    return table;
}

} // namespace walk::tables
