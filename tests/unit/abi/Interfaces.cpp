// Every class with virtual operations that the plug-in shares with others, named once: compiled
// with whole debug information for plugin_test.py, which reads the tables of virtual operations from
// it. Nothing here is ever run.

#include <norvex/client/AVControl.h>
#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/DataControl.h>
#include <norvex/client/NorvexAPIConnection.h>
#include <norvex/client/NorvexSession.h>
#include <norvex/client/PipelineUtility.h>
#include <norvex/client/ProgramData.h>
#include <norvex/client/RectInfo.h>
#include <norvex/client/ReferenceCount.h>
#include <norvex/client/ScanControl.h>
#include <norvex/client/Service.h>
#include <norvex/client/ServiceData.h>
#include <norvex/client/ServiceGuide.h>
#include <norvex/client/ServiceNavigation.h>
#include <norvex/client/SignalSubscriber.h>
#include <norvex/client/SourceControl.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/client/TunerControl.h>
#include <norvex/client/TvMode.h>
#include <norvex/client/VideoControl.h>
#include <norvex/client/ZoomControl.h>
#include <norvex/core/ClassToTreeFormatter.h>
#include <norvex/core/LengthInfoContainer.h>
#include <norvex/core/Marshalable.h>
#include <norvex/core/MarshallingHelper.h>
#include <norvex/core/MarshallingHelperProxy.h>
#include <norvex/core/NodeCreator.h>
#include <norvex/core/TreeBranch.h>
#include <norvex/core/TreeFormatter.h>
#include <norvex/core/TreeNode.h>
#include <norvex/core/TreeToClassFormatter.h>
#include <zarn/DebugPrintControl.h>
#include <zarn/MenuItem.h>

namespace abi {

__attribute__((visibility("default"))) void Name(const DefaultNodeCreator&) {}
__attribute__((visibility("default"))) void Name(const IAVControl&) {}
__attribute__((visibility("default"))) void Name(const IDataControl&) {}
__attribute__((visibility("default"))) void Name(const IDebugPrintControl&) {}
__attribute__((visibility("default"))) void Name(const INorvexSession&) {}
__attribute__((visibility("default"))) void Name(const IPipelineUtility&) {}
__attribute__((visibility("default"))) void Name(const IReferenceCount&) {}
__attribute__((visibility("default"))) void Name(const IScanControl&) {}
__attribute__((visibility("default"))) void Name(const IService&) {}
__attribute__((visibility("default"))) void Name(const IServiceGuide&) {}
__attribute__((visibility("default"))) void Name(const IServiceNavigation&) {}
__attribute__((visibility("default"))) void Name(const ISignalSubscriber&) {}
__attribute__((visibility("default"))) void Name(const ISourceControl&) {}
__attribute__((visibility("default"))) void Name(const ITunerControl&) {}
__attribute__((visibility("default"))) void Name(const IVideoControl&) {}
__attribute__((visibility("default"))) void Name(const IZoomControl&) {}
__attribute__((visibility("default"))) void Name(const NorvexAPIConnection&) {}
__attribute__((visibility("default"))) void Name(const TCClassToTreeFormatter&) {}
__attribute__((visibility("default"))) void Name(const TCCriteriaHelper&) {}
__attribute__((visibility("default"))) void Name(const TCMarshalable&) {}
__attribute__((visibility("default"))) void Name(const TCMarshalableNodeCreator&) {}
__attribute__((visibility("default"))) void Name(const TCMarshallingHelper&) {}
__attribute__((visibility("default"))) void Name(const TCMarshallingHelperProxy&) {}
__attribute__((visibility("default"))) void Name(const TCProgramData&) {}
__attribute__((visibility("default"))) void Name(const TCServiceData&) {}
__attribute__((visibility("default"))) void Name(const TCTPMSStatus&) {}
__attribute__((visibility("default"))) void Name(const TCTPMSStatusEntry&) {}
__attribute__((visibility("default"))) void Name(const TCTreeBranch&) {}
__attribute__((visibility("default"))) void Name(const TCTreeFormatter&) {}
__attribute__((visibility("default"))) void Name(const TCTreeLeafVar&) {}
__attribute__((visibility("default"))) void Name(const TCTreeNode&) {}
__attribute__((visibility("default"))) void Name(const TCTreeToClassFormatter&) {}
__attribute__((visibility("default"))) void Name(const TILengthInfoContainer&) {}
__attribute__((visibility("default"))) void Name(const TIMarshalable&) {}
__attribute__((visibility("default"))) void Name(const TINodeCreator&) {}
__attribute__((visibility("default"))) void Name(const TSMenuItem&) {}
__attribute__((visibility("default"))) void Name(const TSRectInfo&) {}
__attribute__((visibility("default"))) void Name(const TSTvMode&) {}

} // namespace abi
