#pragma once

#include <string>

#include "Table.h"

namespace walk::tables {

// The lines in the log for a field that is not there; `tag` is three characters wide.
inline Acts missingTag(const std::string& tag) {
    const std::string frame =
        "TCApiPrintMessage(*************************** ASSERT TAG ***************************)";
    return {note(frame),
            note("TCApiPrintMessage(******************* ASSERT: missing tag[" + tag +
                 "] *********************)"),
            note(frame)};
}

// Reads a field of the current record into `variable`; `otherwise` where it has none.
inline Acts readField(const std::string& tag, const std::string& tagOfThree,
                      const std::string& variable, const std::string& otherwise) {
    Acts missing = missingTag(tagOfThree);
    missing.push_back(set(variable, otherwise));
    Acts withoutData = missing;
    withoutData.insert(withoutData.begin(), note("TCApiPrintMessage(tag " + tag + " has do data)"));
    return {script("field", tag),
            choose("field", {{"field " + tag + " there", {"there"}, {set(variable, "$value")}},
                             {"field " + tag + " without data", {"no data"}, withoutData},
                             {"field " + tag + " absent", {"absent"}, missing},
                             {"no table for field " + tag, {}, missing}})};
}

} // namespace walk::tables
