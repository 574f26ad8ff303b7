#include "ServiceLookup.h"

#include "Frame.h"
#include "Tables.h"

namespace walk::tables {

namespace {

// The find and what becomes of it; its words have no line end.
Acts foundOrNot() {
    return {
        script("found record"),
        call("$service.FindService(true, 1)", "found"),
        choose("found",
               {{"found", {kAboveZero}, {run(readServiceId)}},
                {"not found", {}, {say("FindService failed"), set("id", kInvalidService)}}}),
        note("~ServiceData"),
        note("~CriteriaHelper"),
    };
}

Acts together(Acts acts, const Acts& more, const Acts& end) {
    acts.insert(acts.end(), more.begin(), more.end());
    acts.insert(acts.end(), end.begin(), end.end());
    return acts;
}

} // namespace

const Table& readServiceId() {
    static const Table table = {"service id", readField("12", " 12", "id", kInvalidService)};
    return table;
}

const Table& findByMajor() {
    static const Table table = {"find by major", together(
                                                     {
                                                         create("service", "Service", ""),
                                                         note("GetNavigationCriteria(14, 0)"),
                                                         note("CriteriaHelper.Where(13, $major)"),
                                                         note("CriteriaHelper.Fetch(12)"),
                                                     },
                                                     foundOrNot(), {destroy("service")})};
    return table;
}

const Table& findOnAir() {
    static const Table table = {
        "find on air",
        together(
            {
                create("service", "Service", ""),
                create("navigation", "ServiceNavigation", "1, 0"),
                call("$navigation.GetTvMode({-1, -1})", "mode"),
                script("tv mode"),
                // Without an answer the mode stays -1, which is not 0.
                choose("mode", {{"mode read", {kAboveZero}, {}},
                                {"mode not read", {}, {set("serviceMode", "-1")}}}),
                choose("serviceMode", {{"profile 0", {"0"}, {set("serviceProfile", "0")}},
                                       {"profile 2", {}, {set("serviceProfile", "2")}}}),
                note("ServiceProfileToServiceMode($serviceProfile)"),
                note("CriteriaHelper.Where(3, $serviceProfile)"),
                note("CriteriaHelper.Where(23, 1)"),
                note("CriteriaHelper.Where(25, 0)"),
                note("CriteriaHelper.Where(13, $major)"),
                note("CriteriaHelper.Fetch(12)"),
                // The channel type comes after the fetch list; 40 is the fake's for air.
                note("AntennaModeToDigitalChannelType(0)"),
                note("CriteriaHelper.Where(1, 40)"),
            },
            foundOrNot(), {destroy("navigation"), destroy("service")})};
    return table;
}

// "list" has the services as a call shows them, "services" whether there are any.
const Table& listServices() {
    static const Table table = {
        "list of services",
        {
            set("services", "none"),
            call("$nav.GetTvMode({-1, -1})", "mode"),
            script("tv mode"),
            choose("mode", {{"mode read", {kAboveZero}, {}},
                            {"mode not read", {}, {say("GetTvMode failed!\n"), back()}}}),
            note("GetNavigationCriteria(1, 0)"),
            note("CriteriaHelper.WhereNot(1, 9)"),
            note("CriteriaHelper.Fetch(12)"),
            script("service list"),
            call("$nav.GetServiceList(0, {$antenna, $serviceMode}, 0, 0)"),
            choose("records",
                   {{"empty", {"0"}, {say("services.empty()!\n"), note("~CriteriaHelper"), back()}},
                    {"not empty", {}, {}}}),
            set("list", ""),
            set("comma", ""),
            eachRecord({run(readServiceId), set("list", "$list$comma$#id:5"), set("comma", ", ")}),
            eachRecord({note("~ServiceData")}),
            note("~CriteriaHelper"),
            set("services", "some"),
        }};
    return table;
}

} // namespace walk::tables
