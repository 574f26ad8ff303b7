#include "Commands.h"
#include "Context.h"

namespace sim {

namespace {

// "IAVControl.MuteVideo(value: int) = status: int"
std::string Describe(const Interface& interface, const Operation& operation) {
    std::string in;
    std::string out;
    for (const Argument& argument : operation.arguments) {
        std::string& list = argument.isRead ? in : out;
        list += (list.empty() ? "" : ", ") + std::string(argument.name) + ": " + argument.type->name;
    }
    const std::string name = interface.GetName().substr(interfaces::kNamePrefix.size());
    return name + "." + operation.name + "(" + in + ") = " + out + "\n";
}

} // namespace

void AddOperationsCommand(Context& context) {
    context.commands.Add("operations", "List the operations that calls, inject and wait accept", [&](CommandLine&) {
        return [&context](ControlConnection& connection) {
            std::string lines;
            for (const Interface* interface : context.dispatcher.GetInterfaces()) {
                for (const auto& operation : interface->GetOperations())
                    lines += Describe(*interface, *operation);
            }
            connection.Print(lines);
            connection.Finish();
        };
    });
}

} // namespace sim
