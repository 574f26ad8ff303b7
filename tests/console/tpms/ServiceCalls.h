#pragma once

#include <string>

// What the scenarios that look services up have in common on the time line.

// The lines in the log for a record without the field `tag`, three characters wide (" 12").
inline std::string MissingTag(const std::string& tag) {
    const std::string frame = "{TCApiPrintMessage(*************************** ASSERT TAG "
                              "***************************)}";
    return frame + "{TCApiPrintMessage(******************* ASSERT: missing tag[" + tag + "] *********************)}" +
           frame;
}

// A field that is there without a value is told beforehand.
inline std::string EmptyTag(const std::string& tag) {
    return "{TCApiPrintMessage(tag " + tag + " has do data)}";
}

// The look-up of a channel number on any antenna; `found` is what follows the find.
inline std::string FindByMajor(const std::string& major, const std::string& found = "") {
    return "{CreateService()}{GetNavigationCriteria(14, 0)}{CriteriaHelper.Where(13, " + major +
           ")}{CriteriaHelper.Fetch(12)}{Service.FindService(true, 1)}" + found +
           "{~ServiceData}{~CriteriaHelper}{Destroy(Service)}";
}

// A query's conditions for a channel number in the line-up with that profile.
inline std::string InLineUp(const std::string& profile, const std::string& major) {
    return "{ServiceNavigation.GetTvMode({-1, -1})}{ServiceProfileToServiceMode(" + profile +
           ")}{CriteriaHelper.Where(3, " + profile +
           ")}{CriteriaHelper.Where(23, 1)}{CriteriaHelper.Where(25, 0)}{CriteriaHelper.Where(13, " + major +
           ")}{CriteriaHelper.Fetch(12)}";
}

// Its condition for an antenna mode, and the find; the channel type is the fake's.
inline std::string FindBroadcast(const std::string& antennaMode) {
    return "{AntennaModeToDigitalChannelType(" + antennaMode + ")}{CriteriaHelper.Where(1, 4" + antennaMode +
           ")}{Service.FindService(true, 1)}";
}

// The look-up on one antenna.
inline std::string FindOnAntenna(const std::string& antennaMode, const std::string& profile, const std::string& major,
                                 const std::string& found = "") {
    return "{CreateService()}{CreateServiceNavigation(1, 0)}" + InLineUp(profile, major) + FindBroadcast(antennaMode) +
           found + "{~ServiceData}{~CriteriaHelper}{Destroy(ServiceNavigation)}{Destroy(Service)}";
}

// The list of the services that are scanned; `after` is what follows it, before its records go.
inline std::string ListServices(int records, const std::string& tvMode = "0, 0", const std::string& after = "") {
    std::string text = "{ServiceNavigation.GetTvMode({-1, -1})}{GetNavigationCriteria(1, 0)}"
                       "{CriteriaHelper.WhereNot(1, 9)}{CriteriaHelper.Fetch(12)}"
                       "{ServiceNavigation.GetServiceList(0, {" +
                       tvMode + "}, 0, 0)}" + (records == 0 ? "services.empty()!\n" : after);
    for (int i = 0; i < records; ++i)
        text += "{~ServiceData}";
    return text + "{~CriteriaHelper}";
}
