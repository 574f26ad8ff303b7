#include "Parts.h"

#include "Chassis.h"
#include "Commands.h"
#include "DebugPrintControl.h"
#include "Device.h"
#include "ServiceParts.h"
#include "SessionInterface.h"

namespace sim {

bool MountParts(Chassis& chassis, const Options& options, std::string& error) {
    chassis.Mount<SessionInterface>(chassis);
    chassis.Mount<Device>(chassis);
    chassis.Mount<DebugPrintControl>(chassis, options.items);
    if (!MountServices(chassis, options.lineUp ? &*options.lineUp : nullptr, error))
        return false;
    // A TV that had forgotten what it keeps would overwrite it.
    error = chassis.settings.GetReadError();
    if (!error.empty())
        return false;

    AddStateCommands(chassis);
    AddCallsCommand(chassis);
    AddInjectCommand(chassis);
    AddWaitCommand(chassis);
    return true;
}

} // namespace sim
