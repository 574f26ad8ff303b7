#include "Tables.h"

#include "Frame.h"

namespace walk::tables {

namespace {

const std::string kMenu =
    framed("\t[Test17 List - SetPreviewSource]\t\n",
           " 1. call [Main Handle] ISourceControl::SetPreviewSource(ESource)  \n"
           " 2. call [Main Handle] ISourceControl::SetPreviewSource(ESource, Major)  \n");

Acts called(const std::string& arguments) {
    return {create("src", "SourceControl", "1, 0"),
            call("$src.SetPreviewSource(" + arguments + ", \"\")"), destroy("src")};
}

Acts byChannel() {
    Acts acts = {
        ask("Enter major (int)> ", "typed", Form::Command),
        choose("typed", {{"no channel", {"-1"}, {again()}}, {"a channel", {}, {}}}),
        set("major", "$typed", Form::Low16), run(findOnAir),
        choose("id", {{"no service", {kInvalidService}, {say(" for major=$typed\n"), again()}},
                      {"a service", {}, {}}})};
    const Acts call = called("$source, $#id");
    acts.insert(acts.end(), call.begin(), call.end());
    return acts;
}

} // namespace

const Table& setPreviewSource() {
    static const Table table = {
        "set preview source",
        {
            loop({
                say(kMenu),
                ask(" select num> ", "n", Form::Command),
                choose("n", {{"99", {"99"}, {leave()}},
                             {"no number", {"-1"}, {again()}},
                             {"1 or 2", {"1", "2"}, {}},
                             {"any other", {}, {again()}}}),
                ask("Enter ESource (TV=0, HDMI1=13)> ", "source", Form::Command),
                choose("source",
                       {{"no source", {"-1"}, {again()}},
                        {"source of the middle", {"1..46"}, {}},
                        {"first source", {"0"}, {}},
                        {"last source", {"47"}, {}},
                        {"invalid source",
                         {},
                         {say("Invalid source $source. Valid values (0, 47)\n"), again()}}}),
                choose("n", {{"1", {"1"}, called("$source")}, {"2", {}, byChannel()}}),
                // 1 alone is success.
                choose("ret", {{"called", {"1"}, {say("Succesfully called ")}},
                               {"failed", {}, {say("Fail to ")}}}),
                say("SetPreviewSource, ret=$ret\n"),
            }),
        }};
    return table;
}

} // namespace walk::tables
