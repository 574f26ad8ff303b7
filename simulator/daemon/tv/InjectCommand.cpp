#include <memory>
#include <optional>

#include "Commands.h"
#include "Context.h"

namespace sim {

using nlohmann::json;

namespace {

constexpr std::int32_t kMaxDelayMilliseconds = 3'600'000;
constexpr std::int32_t kMaxCount = 1'000'000;

struct Order {
    std::string operation;
    std::optional<std::int32_t> result;
    std::optional<std::int32_t> delay;
    bool drop = false;
    bool close = false;
    bool die = false;
    std::int32_t count = 1;
    std::string text;
};

// Nothing unless exactly one failure is given.
std::optional<Injection> ToInjection(const Order& order) {
    using Kind = Injection::Kind;
    if (order.result.has_value() + order.delay.has_value() + order.drop + order.close + order.die !=
        1)
        return {};
    const Kind kind = order.result  ? Kind::Result
                      : order.delay ? Kind::Delay
                      : order.drop  ? Kind::Drop
                      : order.close ? Kind::Close
                                    : Kind::Die;
    return Injection{kind, order.result.value_or(order.delay.value_or(0)), order.text};
}

void Inject(Context& context, const Order& order, ControlConnection& asker) {
    const auto injection = ToInjection(order);
    if (!injection)
        return asker.Fail("expected one of --result, --delay, --drop, --close and --die",
                          CommandLine::kBadArguments);
    const std::vector<Operation*> operations = context.dispatcher.FindOperations(order.operation);
    if (operations.empty())
        return asker.Fail("unknown operation '" + order.operation + "'");
    for (const Operation* each : operations)
        context.injections.Add(*each, *injection, static_cast<unsigned>(order.count));
    context.changes.Tell();
    asker.Finish();
}

} // namespace

void AddInjectCommand(Context& context) {
    context.commands.Add("inject", "Make the next calls of an operation fail", [&](CommandLine& line) {
        auto order = std::make_shared<Order>();
        line.Text("operation", order->operation, "INTERFACE.METHOD",
                  "Which operation, as IAVControl.MuteVideo");
        line.Integer("--result", order->result, "N",
                     "It does not happen; this result is its only answer");
        line.Integer("--delay", order->delay, 0, kMaxDelayMilliseconds, "MS",
                     "It happens, its reply comes late");
        line.Flag("--drop", order->drop, "It happens, its reply never comes");
        line.Flag("--close", order->close, "It does not happen, the connection is closed");
        line.Flag("--die", order->die, "It does not happen, the TV ends on the spot");
        line.Integer("--count", order->count, 1, kMaxCount, "N", "For so many calls (1)");
        line.Text(
            "--with", order->text, "TEXT",
            "Only calls with this text among their arguments, as INorvexSession.Open --with IAVControl");
        return [&context, order](ControlConnection& asker) { Inject(context, *order, asker); };
    });
}

} // namespace sim
