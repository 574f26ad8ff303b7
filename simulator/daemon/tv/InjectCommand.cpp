#include <memory>
#include <optional>

#include "Commands.h"
#include "Context.h"

namespace sim {

using nlohmann::json;

namespace {

constexpr std::int32_t kMaxDelayMilliseconds = 3'600'000;
constexpr std::int32_t kMaxCount = 1'000'000;
constexpr std::size_t kMaxOrders = 1000;

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
    if (order.result.has_value() + order.delay.has_value() + order.drop + order.close + order.die != 1)
        return {};
    const Kind kind = order.result  ? Kind::Result
                      : order.delay ? Kind::Delay
                      : order.drop  ? Kind::Drop
                      : order.close ? Kind::Close
                                    : Kind::Die;
    return Injection{kind, order.result.value_or(order.delay.value_or(0)), order.text};
}

void Inject(Context& context, const Order& order, ControlConnection& connection) {
    const auto injection = ToInjection(order);
    if (!injection)
        return connection.Fail("expected one of --result, --delay, --drop, --close and --die",
                               CommandLine::kBadArguments);
    const std::vector<Operation*> operations = context.dispatcher.FindOperations(order.operation);
    if (operations.empty())
        return connection.Fail("unknown operation '" + order.operation + "'");
    if (context.injections.GetCount() >= kMaxOrders)
        return connection.Fail(std::to_string(kMaxOrders) + " failures are pending already; reset removes them");
    for (const Operation* each : operations)
        context.injections.Add(*each, *injection, static_cast<unsigned>(order.count));
    context.changes.Mark("/daemon/injections");
    connection.Finish();
}

} // namespace

void AddInjectCommand(Context& context) {
    context.commands.Add("inject", "Make the next calls of an operation fail", [&](CommandLine& line) {
        auto order = std::make_shared<Order>();
        line.Text("operation", order->operation, "INTERFACE.METHOD", "The operation, such as IAVControl.MuteVideo");
        line.Integer("--result", order->result, "N", "The operation is not executed and returns only this result");
        line.Integer("--delay", order->delay, 0, kMaxDelayMilliseconds, "MS",
                     "The operation is executed, its reply is delayed");
        line.Flag("--drop", order->drop, "The operation is executed, its reply is not sent");
        line.Flag("--close", order->close, "The operation is not executed, the connection is closed");
        line.Flag("--die", order->die, "The operation is not executed, the TV ends at once");
        line.Integer("--count", order->count, 1, kMaxCount, "N", "Number of calls (1)");
        line.Text("--with", order->text, "TEXT",
                  "Only calls with this text among their arguments, such as INorvexSession.Open --with IAVControl");
        return [&context, order](ControlConnection& connection) { Inject(context, *order, connection); };
    });
}

} // namespace sim
