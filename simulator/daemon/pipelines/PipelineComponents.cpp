#include "PipelineComponents.h"

#include "AVControl.h"
#include "Context.h"
#include "DataControl.h"
#include "PipelineUtility.h"
#include "Pipelines.h"
#include "Preparation.h"
#include "ReferenceCount.h"
#include "ServiceNavigation.h"
#include "SourceControl.h"
#include "Subscribers.h"
#include "Inputs.h"
#include "TunerControl.h"
#include "VideoControl.h"
#include "ZoomControl.h"

namespace sim {

PipelineComponents RegisterPipelines(Context& context, LineUp& lineUp) {
    auto& subscribers = context.Register<Subscribers>(context);
    auto& inputs = context.Register<Inputs>(context);
    auto& pipelines = context.Register<Pipelines>(context, lineUp, inputs, subscribers);
    auto& preparation = context.Register<Preparation>(context, pipelines);

    context.Register<ReferenceCount>(context, pipelines);
    context.Register<AVControl>(context, pipelines);
    context.Register<VideoControl>(context, pipelines);
    context.Register<TunerControl>(context, pipelines);
    context.Register<DataControl>(context, pipelines);
    context.Register<SourceControl>(context, pipelines, preparation, inputs);
    context.Register<ServiceNavigation>(context, lineUp, pipelines, preparation);
    context.Register<PipelineUtility>(context, pipelines, preparation);
    context.Register<ZoomControl>(context, pipelines);

    AddSignalCommand(context, subscribers);
    return {subscribers, inputs, pipelines, preparation};
}

} // namespace sim
