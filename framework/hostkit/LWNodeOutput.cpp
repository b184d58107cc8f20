#include "hostkit/LWNodeOutput.h"

namespace hostkit {

LWNodeOutput::LWNodeOutput(NodeID n, ConnectionType type, const char* name) : node(n) {
  funcs = service.getGlobal();
  set = reinterpret_cast<decltype(set)>(funcs->setValue);
  output = funcs->create(node, type, name);
  owned = 1;
}

LWNodeOutput::~LWNodeOutput() {
  if (owned && output) funcs->destroy(node, output);
}

}  // namespace hostkit
