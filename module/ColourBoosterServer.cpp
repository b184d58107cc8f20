// Registers the Colour Booster node.
#include <lwnodes.h>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "nodes/colour/ColourBooster.h"

namespace {

ServerTagInfo tags[] = {
    {"Colour Booster", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {"Vorn/Colour", SRVTAG_NODEGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWNODE_HCLASS, hostkit::NodeAdaptor<vorn::ColourBooster, 2, 1>::Activate,
                                         LWNODE_ICLASS, hostkit::XPanelAdaptor<vorn::ColourBooster>::Interface, "vornColourBooster",
                                         tags);

}  // namespace
