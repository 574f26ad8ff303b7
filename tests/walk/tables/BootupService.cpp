#include "Tables.h"

namespace walk::tables {

// The navigation is kept on both early ways out.
const Table& bootupService() {
    static const Table table = {
        "boot-up service",
        {
            create("nav", "ServiceNavigation", "1, 0", Making::Checked),
            choose("made",
                   {{"navigation made", {"0"}, {}},
                    {"no navigation", {}, {say("CreateServiceNavigation failed\n"), back()}}}),
            ask("major> ", "major", Form::Channel),
            choose("major", {{"no channel", {"65535"}, {back()}}, {"a channel", {}, {}}}),
            run(findByMajor),
            call("$nav.SetBootupService($#id, {-1, -1}, 0)"),
            choose("ret", {{"set", {kAboveZero}, {destroy("nav")}},
                           {"not set", {}, {say(" SetBootupService failed!")}}}),
        }};
    return table;
}

} // namespace walk::tables
