// Registers the Simple Colour Corrector node.
#include <lwnodes.h>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "nodes/colour/SimpleCCNode.h"

namespace {

ServerTagInfo tags[] = {
    {"Simple Colour Corrector", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {"Vorn/Colour", SRVTAG_NODEGROUP},
    {"Simple Colour Corrector", SRVTAG_DESCRIPTION},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWNODE_HCLASS, hostkit::NodeAdaptor<vorn::SimpleCCNode, 1, 1>::Activate,
                                         LWNODE_ICLASS, hostkit::XPanelAdaptor<vorn::SimpleCCNode>::Interface, "SimpleColourCorrector",
                                         tags);

}  // namespace
