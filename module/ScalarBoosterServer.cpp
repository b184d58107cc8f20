// Registers the Scalar Booster node.
#include <lwnodes.h>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "nodes/colour/ScalarBooster.h"

namespace {

ServerTagInfo tags[] = {
    {"Scalar Booster", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {"Vorn/Scalar", SRVTAG_NODEGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWNODE_HCLASS, hostkit::NodeAdaptor<vorn::ScalarBooster, 2, 1>::Activate,
                                         LWNODE_ICLASS, hostkit::XPanelAdaptor<vorn::ScalarBooster>::Interface, "vornScalarBooster",
                                         tags);

}  // namespace
