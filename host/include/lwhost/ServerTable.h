#pragma once

#include <string>

#include "lwhost/ModuleFile.h"

namespace lwhost {

// The module's server records as a text table: class, server name, user name, groups
// (command group, then node group) and description, one record a row.
std::string FormatServerTable(const ModuleFile& module);

}  // namespace lwhost
