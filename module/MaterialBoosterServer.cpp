// Registers the Material Booster node.
#include <lwnodes.h>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "nodes/materials/MaterialBooster.h"

namespace {

ServerTagInfo tags[] = {
    {"Material Booster", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {"Vorn/Materials", SRVTAG_NODEGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWNODE_HCLASS, hostkit::NodeAdaptor<vorn::MaterialBooster, 2, 1>::Activate,
                                         LWNODE_ICLASS, hostkit::XPanelAdaptor<vorn::MaterialBooster>::Interface, "vornMaterialBooster",
                                         tags);

}  // namespace
