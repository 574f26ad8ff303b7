#include "PipelineComponents.h"

#include "Context.h"
#include "Inputs.h"
#include "Pipelines.h"
#include "Preparation.h"
#include "Subscribers.h"

namespace sim {

PipelineComponents RegisterPipelines(Context& context, LineUp& lineUp) {
    auto& subscribers = context.Register<Subscribers>(context);
    auto& inputs = context.Register<Inputs>(context);
    auto& pipelines = context.Register<Pipelines>(context, lineUp, inputs, subscribers);
    auto& preparation = context.Register<Preparation>(context, pipelines);

    RegisterReferenceCount(context, pipelines);
    RegisterAVControl(context, pipelines);
    RegisterVideoControl(context, pipelines);
    RegisterTunerControl(context, pipelines);
    RegisterDataControl(context, pipelines);
    RegisterSourceControl(context, pipelines, preparation, inputs);
    RegisterServiceNavigation(context, lineUp, pipelines, preparation);
    RegisterPipelineUtility(context, pipelines, preparation);
    RegisterZoomControl(context, pipelines);

    AddSignalCommand(context, subscribers);
    return {subscribers, inputs, pipelines, preparation};
}

} // namespace sim
