#include "Tables.h"

namespace walk::tables {

const Table& caption() {
    static const Table table = {
        "caption",
        {
            say("Check Caption exist\n"),
            create("data", "DataControl", "1, 0"),
            set("exists", "0"),
            call("$data.CheckCaptionExist(false)"),
            gives("DataControl.CheckCaptionExist", "exists", {"", "0", "1", "1"}),
            choose("exists", {{"no caption", {"0"}, {say("Caption exist:0\n")}},
                              {"a caption", {}, {say("Caption exist:1\n")}}}),
            destroy("data"),
        }};
    return table;
}

} // namespace walk::tables
