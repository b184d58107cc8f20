// Registers the Command Statistics master.
#include <lwmaster.h>

#include "hostkit/LWPanelAdaptor.h"
#include "hostkit/MasterAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "masters/commandstats/CommandStats.h"

namespace {

ServerTagInfo tags[] = {
    {"Vorn Command Statistics", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWMASTER_HCLASS,
                                         hostkit::MasterAdaptor<vorn::CommandStats, LWMAST_LAYOUT>::Activate,
                                         LWMASTER_ICLASS, hostkit::LWPanelAdaptor<vorn::CommandStats>::Interface,
                                         "CommandStatistics", tags);

}  // namespace
