#include "ServiceComponents.h"

#include <cinttypes>

#include <norvex/client/Source.h>

#include "Clock.h"

namespace sim {

namespace {

void ShowBootupService(Context& context, ServiceLineUp& lineUp, Pipelines& pipelines) {
    const auto& bootup = lineUp.GetBootup();
    if (!bootup)
        return;
    const auto facts = lineUp.FindFacts(bootup->service);
    if (!facts || facts->antenna != bootup->tvMode.antenna) {
        context.log.Write(kOwnTag, "the line-up no longer has the boot-up service 0x%" PRIx64, bootup->service);
        return;
    }
    Change change;
    change.tvMode = bootup->tvMode;
    change.source = SOURCE_TV;
    change.service = bootup->service;
    pipelines.Perform(kMainPipeline, change);
}

} // namespace

std::optional<ServiceComponents> RegisterServices(Context& context, const LineUpSource* given, std::string& error) {
    auto& clock = context.Register<Clock>(context);
    auto& programmes = context.Register<Programmes>(context.database, clock);
    auto& lineUp = context.Register<ServiceLineUp>(context, programmes);
    if (!lineUp.Start(given, error))
        return {};
    const PipelineComponents parts = RegisterPipelines(context, lineUp);
    auto& scans =
        context.Register<Scans>(context, lineUp, programmes, parts.pipelines, parts.inputs, parts.subscribers);
    RegisterServiceLookup(context, lineUp.GetQueries());
    RegisterServiceGuide(context, lineUp, programmes);
    RegisterScanControl(context, lineUp, programmes, parts.pipelines, scans);
    AddLineUpCommands(context, lineUp);

    lineUp.SetListener([&parts = parts.pipelines] { parts.LineUpChanged(); });
    ShowBootupService(context, lineUp, parts.pipelines);
    return ServiceComponents{lineUp, programmes, parts, scans};
}

} // namespace sim
