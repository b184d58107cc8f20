#include "hostkit/LWNode.h"

namespace hostkit {

LWNode::~LWNode() {
  // Outputs first: the host drops their connections before the inputs go.
  outputs_.clear();
  inputs_.clear();
}

LWNodeInput* LWNode::addInput(ConnectionType type, const char* name, NodeInputEvent* callback) {
  inputs_.push_back(std::make_unique<LWNodeInput>(nodeID, type, name, callback));
  return inputs_.back().get();
}

LWNodeOutput* LWNode::addOutput(ConnectionType type, const char* name) {
  outputs_.push_back(std::make_unique<LWNodeOutput>(nodeID, type, name));
  return outputs_.back().get();
}

}  // namespace hostkit
