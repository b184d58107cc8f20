// Registers the Extended Spot Info node.
#include <lwnodes.h>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "nodes/utility/ExSpotInfo.h"

namespace {

ServerTagInfo tags[] = {
    {"Extended Spot Info", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {"Vorn/Spot", SRVTAG_NODEGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWNODE_HCLASS, hostkit::NodeAdaptor<vorn::ExSpotInfo, 2, 1>::Activate,
                                         LWNODE_ICLASS, hostkit::XPanelAdaptor<vorn::ExSpotInfo>::Interface, "vornExSpotInfo",
                                         tags);

}  // namespace
