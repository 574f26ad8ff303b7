#pragma once

#include <string>

// What the scenarios that look services up have in common on the time line.

// The lines in the log for a record without the field `tag`, three characters wide (" 12").
inline std::string missingTag(const std::string& tag) {
    const std::string frame = "{TCApiPrintMessage(*************************** ASSERT TAG "
                              "***************************)}";
    return frame + "{TCApiPrintMessage(******************* ASSERT: missing tag[" + tag +
           "] *********************)}" + frame;
}

// The look-up of a channel number on any antenna, without what it prints, up to the find.
inline std::string findByMajor(const std::string& service, const std::string& major) {
    return "{CreateService()}{GetNavigationCriteria(14, 0)}{CriteriaHelper.Where(13, " + major +
           ")}{CriteriaHelper.Fetch(12)}{" + service + ".FindService(true, 1)}";
}
// Its end.
inline std::string foundByMajor(const std::string& service) {
    return "{~ServiceData}{~CriteriaHelper}{Destroy(" + service + ")}";
}
