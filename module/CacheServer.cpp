// Registers the Cache node.
#include <lwnodes.h>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "nodes/utility/CacheNode.h"

namespace {

ServerTagInfo tags[] = {
    {"Cache", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {"Vorn/Tools", SRVTAG_NODEGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWNODE_HCLASS, hostkit::NodeAdaptor<vorn::CacheNode, 2, 1>::Activate,
                                         LWNODE_ICLASS, hostkit::XPanelAdaptor<vorn::CacheNode>::Interface, "vornCache",
                                         tags);

}  // namespace
