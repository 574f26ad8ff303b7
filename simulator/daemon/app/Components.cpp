#include "Components.h"

#include "Commands.h"
#include "Context.h"
#include "DebugPrintControl.h"
#include "Device.h"
#include "ServiceComponents.h"
#include "SessionInterface.h"

namespace sim {

bool RegisterComponents(Context& context, const Options& options, std::string& error) {
    context.Register<SessionInterface>(context.dispatcher, context.sessions, context.log);
    context.Register<Device>(context, options.deviceDirectory);
    context.Register<DebugPrintControl>(context, options.items);
    if (!RegisterServices(context, options.lineUp ? &*options.lineUp : nullptr, error))
        return false;
    // Otherwise the TV would overwrite the stored numbers.
    error = context.numbers.GetReadError();
    if (!error.empty())
        return false;

    AddStateCommands(context);
    AddCallsCommand(context);
    AddInjectCommand(context);
    AddOperationsCommand(context);
    AddWaitCommand(context);
    return true;
}

} // namespace sim
