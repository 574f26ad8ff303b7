#include "ServiceParts.h"

#include <cinttypes>

#include <norvex/client/Source.h>

#include "Clock.h"
#include "ScanControl.h"
#include "ServiceGuide.h"
#include "ServiceLookup.h"

namespace sim {

namespace {

void ShowBootupService(Chassis& chassis, ServiceLineUp& lineUp, Pipelines& pipelines) {
    const auto& bootup = lineUp.GetBootup();
    if (!bootup)
        return;
    const auto facts = lineUp.FindFacts(bootup->service);
    if (!facts || facts->antenna != bootup->tvMode.antenna) {
        chassis.log.Write(kOwnTag, "the line-up no longer has the boot-up service 0x%" PRIx64,
                          bootup->service);
        return;
    }
    Change change;
    change.tvMode = bootup->tvMode;
    change.source = SOURCE_TV;
    change.service = bootup->service;
    pipelines.Perform(kMainPipeline, change);
}

} // namespace

std::optional<ServiceParts> MountServices(Chassis& chassis, const LineUpSource* given,
                                          std::string& error) {
    auto& clock = chassis.Mount<Clock>(chassis);
    auto& programmes = chassis.Mount<Programmes>(chassis.database, clock);
    auto& lineUp = chassis.Mount<ServiceLineUp>(chassis, programmes);
    if (!lineUp.Start(given, error))
        return {};
    const PipelineParts parts = MountPipelines(chassis, lineUp);
    auto& scans = chassis.Mount<Scans>(chassis, lineUp, programmes, parts.pipelines,
                                       parts.surroundings, parts.subscribers);
    chassis.Mount<ServiceLookup>(lineUp.GetQueries());
    chassis.Mount<ServiceGuide>(chassis, lineUp, programmes);
    chassis.Mount<ScanControl>(chassis, lineUp, programmes, parts.pipelines, scans);
    AddLineUpCommand(chassis, lineUp);

    lineUp.SetListener([&parts = parts.pipelines] { parts.LineUpChanged(); });
    ShowBootupService(chassis, lineUp, parts.pipelines);
    return ServiceParts{lineUp, programmes, parts, scans};
}

} // namespace sim
