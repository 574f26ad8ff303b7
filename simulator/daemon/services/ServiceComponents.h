#pragma once

#include <string>

#include "PipelineComponents.h"
#include "Programmes.h"
#include "Scans.h"
#include "ServiceLineUp.h"

namespace sim {

// The line-up, the components that use it, and the pipelines that show its services.
struct ServiceComponents {
    ServiceLineUp& lineUp;
    Programmes& programmes;
    PipelineComponents pipelines;
    Scans& scans;
};

// Registers them. `given`: the line-up of a new TV; null: the built-in one. Nothing if it is
// malformed or the database fails: `error` is one line.
std::optional<ServiceComponents> RegisterServices(Context& context, const LineUpSource* given, std::string& error);

// The interfaces, each in the file named after it.
void RegisterScanControl(Context& context, ServiceLineUp& lineUp, Programmes& programmes, Pipelines& pipelines,
                         Scans& scans);
void RegisterServiceGuide(Context& context, ServiceLineUp& lineUp, Programmes& programmes);
void RegisterServiceLookup(Context& context, ServiceQueries& queries);

// The commands `lineup load`, `save` and `show` of norvex-simctl.
void AddLineUpCommands(Context& context, ServiceLineUp& lineUp);

} // namespace sim
