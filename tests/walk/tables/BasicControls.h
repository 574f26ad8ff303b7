#pragma once

#include "Table.h"

namespace walk::tables {

// The screen of a pipeline, asked for; "screenId" has it.
inline Acts screenAsked() {
    return {ask("Input ScreenId. Main:0, MLS:1 > ", "screenId", Form::LongLow16).unflushed(),
            say("User Input : screenId:$screenId profile:1\n")};
}

// `acts` after what `first` does.
inline Acts after(Acts first, const Acts& acts) {
    first.insert(first.end(), acts.begin(), acts.end());
    return first;
}

} // namespace walk::tables
