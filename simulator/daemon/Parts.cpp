#include "Parts.h"

#include "Chassis.h"
#include "Commands.h"
#include "DebugPrintControl.h"
#include "Device.h"
#include "LineUp.h"
#include "PipelineParts.h"
#include "SessionInterface.h"

namespace sim {

void MountParts(Chassis& chassis, const Options& options) {
    chassis.Mount<SessionInterface>(chassis);
    chassis.Mount<Device>(chassis);
    chassis.Mount<DebugPrintControl>(chassis, options.items);
    MountPipelines(chassis, chassis.Mount<NoLineUp>());

    AddStateCommands(chassis);
    AddCallsCommand(chassis);
    AddInjectCommand(chassis);
    AddWaitCommand(chassis);
}

} // namespace sim
