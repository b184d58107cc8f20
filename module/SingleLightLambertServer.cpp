// Registers the Single Light Lambert node.
#include <lwnodes.h>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "nodes/colour/IlluminationNode.h"

namespace {

ServerTagInfo tags[] = {
    {"Single Light Lambert", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {"Vorn/Shading", SRVTAG_NODEGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWNODE_HCLASS, hostkit::NodeAdaptor<vorn::IlluminationNode, 1, 1>::Activate,
                                         LWNODE_ICLASS, hostkit::XPanelAdaptor<vorn::IlluminationNode>::Interface,
                                         "vornSingleLambertNode", tags);

}  // namespace
