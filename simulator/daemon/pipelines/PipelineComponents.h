#pragma once

namespace sim {

class Context;
class Inputs;
class LineUp;
class Pipelines;
class Preparation;
class Subscribers;

// The pipelines and related components, for components that use them.
struct PipelineComponents {
    Subscribers& subscribers;
    Inputs& inputs;
    Pipelines& pipelines;
    Preparation& preparation;
};

// Registers all interfaces that work on pipelines, and their shared components. The line-up must
// outlive them.
PipelineComponents RegisterPipelines(Context& context, LineUp& lineUp);

// The interfaces, each in the file named after it.
void RegisterAVControl(Context& context, Pipelines& pipelines);
void RegisterDataControl(Context& context, Pipelines& pipelines);
void RegisterPipelineUtility(Context& context, Pipelines& pipelines, Preparation& preparation);
void RegisterReferenceCount(Context& context, Pipelines& pipelines);
void RegisterServiceNavigation(Context& context, LineUp& lineUp, Pipelines& pipelines, Preparation& preparation);
void RegisterSourceControl(Context& context, Pipelines& pipelines, Preparation& preparation, const Inputs& inputs);
void RegisterTunerControl(Context& context, Pipelines& pipelines);
void RegisterVideoControl(Context& context, Pipelines& pipelines);
void RegisterZoomControl(Context& context, Pipelines& pipelines);

// The command `signal` of norvex-simctl.
void AddSignalCommand(Context& context, Subscribers& subscribers);

} // namespace sim
