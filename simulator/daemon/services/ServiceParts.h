#pragma once

#include <string>

#include "PipelineParts.h"
#include "Programmes.h"
#include "Scans.h"
#include "ServiceLineUp.h"

namespace sim {

// The line-up with what works on it, and the pipelines that show its services.
struct ServiceParts {
    ServiceLineUp& lineUp;
    Programmes& programmes;
    PipelineParts pipelines;
    Scans& scans;
};

// Mounts them. `given`: the line-up of a TV that is new; null: the built-in one. Nothing when it
// makes no sense or the database refuses: `error` is one line.
std::optional<ServiceParts> MountServices(Chassis& chassis, const LineUpSource* given,
                                          std::string& error);

// The command `lineup` of norvex-simctl.
void AddLineUpCommand(Chassis& chassis, ServiceLineUp& lineUp);

} // namespace sim
