// `norvex-simctl signal TYPE [NAME=VALUE...]`: a signal to every registered callback.
#include <memory>
#include <string>
#include <vector>

#include <base/Number.h>
#include <norvex/client/Signal.h>

#include "Context.h"
#include "Event.h"
#include "Handle.h"
#include "PipelineComponents.h"
#include "Subscribers.h"

namespace sim {

namespace {

// At once: a number that even a client that reads slowly receives in full.
constexpr std::uint32_t kMaxCount = 10'000;

// A field of the payload. Signed and unsigned values of its size are accepted.
struct Field {
    const char* name;
    unsigned shift;
    unsigned bits;
};

struct Kind {
    std::int32_t type;
    const char* name;
    std::vector<Field> fields;
};

const std::vector<Kind>& GetKinds() {
    static const std::vector<Kind> kKinds{
        {SIGNAL_SI_STARTED, "SIGNAL_SI_STARTED", {{"chType", 0, 16}, {"srvProfile", 16, 16}, {"chNumber", 32, 16}}},
        {SIGNAL_TUNE_AROUND_SERVICE_DONE, "SIGNAL_TUNE_AROUND_SERVICE_DONE", {{"serviceId", 0, 64}}},
        {SIGNAL_TUNE_AROUND_FINISHED, "SIGNAL_TUNE_AROUND_FINISHED", {{"flag", 0, 16}}},
        {SIGNAL_BARKER_CHANNEL_TUNE, "SIGNAL_BARKER_CHANNEL_TUNE", {{"success", 0, 8}}}};
    return kKinds;
}

bool ParseField(const std::string& value, const Field& field, std::uint64_t& data) {
    const std::uint64_t mask = ~std::uint64_t{0} >> (64 - field.bits);
    std::uint64_t number = 0;
    std::int64_t negative = 0;
    if (value.starts_with('-')) {
        if (!ParseNumber(value, negative) || negative < -static_cast<std::int64_t>(mask / 2) - 1)
            return false;
        number = static_cast<std::uint64_t>(negative) & mask;
    } else if (!ParseNumber(value, number) || number > mask) {
        return false;
    }
    data = (data & ~(mask << field.shift)) | number << field.shift;
    return true;
}

struct Order {
    Signals::Signal signal{0, kMainPipeline.profile, kMainPipeline.screen, 0};
    std::uint32_t count = 1;
};

// One NAME=VALUE.
bool ParseValue(const std::string& argument, const Kind* kind, Order& order) {
    const std::size_t equals = argument.find('=');
    if (equals == std::string::npos)
        return false;
    const std::string name = argument.substr(0, equals);
    const std::string value = argument.substr(equals + 1);
    if (name == "profile")
        return ParseNumber(value, order.signal.profile);
    if (name == "screen")
        return ParseNumber(value, order.signal.screen);
    if (name == "data")
        return ParseNumber(value, order.signal.data);
    if (name == "count")
        return ParseNumber(value, order.count) && order.count <= kMaxCount;
    if (kind == nullptr)
        return false;
    for (const Field& field : kind->fields) {
        if (name == field.name)
            return ParseField(value, field, order.signal.data);
    }
    return false;
}

std::string DescribeNames(const Kind* kind) {
    std::string names = "profile, screen, data, count";
    if (kind != nullptr) {
        for (const Field& field : kind->fields)
            names += std::string(", ") + field.name;
    }
    return names;
}

// Empty, or what is wrong.
std::string Parse(const std::vector<std::string>& arguments, Order& order) {
    const std::string& type = arguments.front();
    const Kind* kind = nullptr;
    bool known = ParseNumber(type, order.signal.type);
    for (const Kind& candidate : GetKinds()) {
        if (known ? candidate.type == order.signal.type : type == candidate.name)
            kind = &candidate;
    }
    if (kind != nullptr) {
        order.signal.type = kind->type;
        known = true;
    }
    if (!known)
        return "unknown signal '" + type + "'";
    for (std::size_t place = 1; place < arguments.size(); ++place) {
        if (!ParseValue(arguments[place], kind, order))
            return "malformed '" + arguments[place] + "'; expected NAME=VALUE, with the names " + DescribeNames(kind);
    }
    return {};
}

} // namespace

void AddSignalCommand(Context& context, Subscribers& subscribers) {
    context.commands.Add(
        "signal", "Send a signal to every registered callback; print the number of signals sent",
        [&](CommandLine& line) {
            auto arguments = std::make_shared<std::vector<std::string>>();
            line.Texts("signal", *arguments, "TYPE NAME=VALUE...",
                       "Its number or name, and its values: profile, screen, data, count, and those of its type");
            return [&, arguments](ControlConnection& connection) {
                Order order;
                const std::string error = Parse(*arguments, order);
                if (!error.empty())
                    return connection.Fail(error);
                std::size_t sent = 0;
                for (std::uint32_t signal = 0; signal < order.count; ++signal)
                    sent += subscribers.SendToAll(order.signal);
                const Event event(context);
                context.log.Write(kOwnTag, "signal %d injected: sent %zu times", order.signal.type, sent);
                connection.Print(std::to_string(sent) + "\n");
                connection.Finish();
            };
        });
}

} // namespace sim
