#include "Tables.h"

namespace walk::tables {

const Table& signalLine() {
    static const Table table = {
        "signal",
        {
            set("chType", "$payload", Form::Field0),
            set("srvProfile", "$payload", Form::Field16),
            set("chNumber", "$payload", Form::Field32),
            set("stopFlag", "$payload", Form::Low16),
            set("tuneFlag", "$payload", Form::Low8),
            choose("signal",
                   {{"service information started",
                     {"81"},
                     {say("\tSIGNAL_SI_STARTED -> profile:$signalProfile, screenId: $signalScreen, "
                          "chType:$chType, srvProfile:$srvProfile, chNumber:$chNumber\n")}},
                    {"tune around, service done",
                     {"193"},
                     {say("\tSIGNAL_TUNE_AROUND_SERVICE_DONE -> profile:$signalProfile, screenId: "
                          "$signalScreen, serviceId: $payload\n")}},
                    {"tune around finished",
                     {"194"},
                     // The words are the other way round than one would think.
                     {choose("stopFlag", {{"flag 0", {"0"}, {set("completed", "true")}},
                                          {"flag not 0", {}, {set("completed", "false")}}}),
                      say("\tSIGNAL_TUNE_AROUND_FINISHED -> profile:$signalProfile, screenId: "
                          "$signalScreen, completed: $completed\n")}},
                    {"barker channel tuned",
                     {"195"},
                     {choose("tuneFlag", {{"no success", {"0"}, {set("tuned", "false")}},
                                          {"success", {}, {set("tuned", "true")}}}),
                      say("\tSIGNAL_BARKER_CHANNEL_TUNE -> profile:$signalProfile, screenId: "
                          "$signalScreen, is success:$tuned\n")}},
                    {"any other", {}, {}}}),
        }};
    return table;
}

} // namespace walk::tables
