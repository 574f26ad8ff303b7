#include "Tables.h"

#include "BasicControls.h"
#include "Frame.h"

namespace walk::tables {

const Table& referenceCount() {
    static const Table table = {
        "reference count",
        after(screenAsked(),
              {
                  create("rc", "ReferenceCount", "1, $screenId", Making::MayBeNull),
                  loop({
                      say(framed("\t[Test1 List - Reference Count]\t\n",
                                 " 1. Call GetReferenceCount() \n")),
                      ask("cmd> ", "n", Form::Command).whileNull("rc", "99"),
                      choose("n", {{"no number", {"-1"}, {}},
                                   {"1",
                                    {"1"},
                                    {set("count", "-1"), call("$rc.GetReferenceCount($count)"),
                                     gives("ReferenceCount.GetReferenceCount", "count",
                                           {"", "0", "1", "42", "-2147483648"}),
                                     say("Reference count value is: $count\n")}},
                                   {"99", {"99"}, {destroy("rc"), leave()}},
                                   {"any other", {}, {}}}),
                  }),
              })};
    return table;
}

} // namespace walk::tables
