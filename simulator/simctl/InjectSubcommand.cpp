#include <cstdint>
#include <memory>

#include "ControlSocket.h"
#include "Subcommands.h"

namespace simctl {

using nlohmann::json;

namespace {

struct Options {
    std::string method;
    std::int32_t result = 0;
    std::int32_t delay = 0;
    bool drop = false;
    bool close = false;
    bool die = false;
    std::uint32_t count = 1;
    std::string text;
};

} // namespace

void AddInject(CLI::App& app, Line& line) {
    CLI::App* inject = app.add_subcommand("inject", "Make the next calls of an operation fail");
    auto options = std::make_shared<Options>();
    inject->add_option("method", options->method, "Which operation, as IAVControl.MuteVideo")
        ->required()
        ->type_name("INTERFACE.METHOD");
    CLI::App* kinds = inject->add_option_group("failure");
    const CLI::Option* result = kinds
                                    ->add_option("--result", options->result,
                                                 "It does not happen; this is all that it answers")
                                    ->type_name("N");
    const CLI::Option* delay =
        kinds->add_option("--delay", options->delay, "It happens, its reply comes late")
            ->check(CLI::Range(0, 3600000))
            ->type_name("MS");
    kinds->add_flag("--drop", options->drop, "It happens, its reply never comes");
    kinds->add_flag("--close", options->close, "It does not happen, the connection is closed");
    kinds->add_flag("--die", options->die, "It does not happen, the daemon ends on the spot");
    kinds->require_option(1);
    inject->add_option("--count", options->count, "For so many calls (1)")
        ->check(CLI::Range(1u, 1000000u))
        ->type_name("N");
    inject
        ->add_option("--with", options->text,
                     "Only calls with this text among their arguments, as INorvexSession.Open "
                     "--with IAVControl")
        ->type_name("TEXT");
    inject->callback([&line, options, result, delay] {
        json request{{"command", "inject"}, {"method", options->method}, {"count", options->count}};
        if (!options->text.empty())
            request["with"] = options->text;
        if (result->count() > 0) {
            request["kind"] = "result";
            request["number"] = options->result;
        } else if (delay->count() > 0) {
            request["kind"] = "delay";
            request["number"] = options->delay;
        } else {
            request["kind"] = options->drop ? "drop" : options->close ? "close" : "die";
        }
        line.run = [&line, request] {
            json answer;
            return ControlSocket(line.socketPath).Ask(request, answer) ? 0 : 1;
        };
    });
}

} // namespace simctl
