// Registers the Channel Blender node.
#include <lwnodes.h>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "nodes/utility/ChannelBlender.h"

namespace {

ServerTagInfo tags[] = {
    {"Channel Blender", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {"Vorn/Tools", SRVTAG_NODEGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWNODE_HCLASS, hostkit::NodeAdaptor<vorn::ChannelBlender, 1, 1>::Activate,
                                         LWNODE_ICLASS, hostkit::XPanelAdaptor<vorn::ChannelBlender>::Interface, "vornChannelBlender",
                                         tags);

}  // namespace
