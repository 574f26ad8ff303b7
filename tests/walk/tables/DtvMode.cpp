#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

namespace {

Row mode(const std::string& number, const std::string& arguments) {
    return {number, {number}, {call("$nav.SetDTVMode(" + arguments + ")")}};
}

} // namespace

const Table& dtvMode() {
    static const Table table = {
        "DTV mode",
        {
            create("nav", "ServiceNavigation", "1, 0", Making::MayBeNull),
            loop({
                say(framed("\t[Test6 List - DTV Mode Test]\t\n",
                           " 1. call IServiceNavigation::SetDTVMode(DTV_MODE_DEMUX_ONLY,true) \n"
                           " 2. call IServiceNavigation::SetDTVMode(DTV_MODE_DEMUX_ONLY,false) \n"
                           " 3. call IServiceNavigation::SetDTVMode(DTV_MODE_AUDIO_ONLY,true) \n"
                           " 4. call IServiceNavigation::SetDTVMode(DTV_MODE_AUDIO_ONLY,false) \n"
                           " 5. call IServiceNavigation::SetDTVMode(DTV_MODE_VIDEO_ONLY,true) \n"
                           " 6. call IServiceNavigation::SetDTVMode(DTV_MODE_VIDEO_ONLY,false) \n"
                           " 7. call IServiceNavigation::SetDTVMode(DTV_MODE_ALL,true) \n"
                           " 8. call IServiceNavigation::SetDTVMode(DTV_MODE_ALL,false) \n")),
                ask("cmd> ", "n", Form::Command).whileNull("nav", "99"),
                choose("n", {{"no number", {"-1"}, {}},
                             mode("1", "0, true"),
                             mode("2", "0, false"),
                             mode("3", "1, true"),
                             mode("4", "1, false"),
                             mode("5", "2, true"),
                             mode("6", "2, false"),
                             mode("7", "3, true"),
                             mode("8", "3, false"),
                             {"0", {"0"}, {leave()}},
                             {"99", {"99"}, {leave()}},
                             {"any other", {}, {leave()}}}),
            }),
            destroy("nav"),
        }};
    return table;
}

} // namespace walk::tables
