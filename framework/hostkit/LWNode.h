#pragma once

#include <lwnodes.h>

#include <memory>
#include <vector>

#include "hostkit/GlobalBase.h"
#include "hostkit/LWNodeInput.h"
#include "hostkit/LWNodeOutput.h"
#include "hostkit/NodeServices.h"

namespace hostkit {

// Whatever can give a node inputs.
class NodeInputHelper {
 public:
  virtual LWNodeInput* addInput(ConnectionType type, const char* name, NodeInputEvent* callback) = 0;

 protected:
  ~NodeInputHelper() = default;
};

// The host node an instance belongs to, with the connections the instance made on it. The node
// owns its inputs and outputs and removes them from the host when it goes.
class LWNode : public GlobalBase<LWNodeFuncs>, public NodeInputHelper {
 public:
  explicit LWNode(NodeID node) : nodeID(node) {}
  LWNode(const LWNode&) = delete;
  LWNode& operator=(const LWNode&) { return *this; }  // connections belong to their node
  ~LWNode() override;

  LWNodeInput* addInput(ConnectionType type, const char* name, NodeInputEvent* callback) override;
  LWNodeOutput* addOutput(ConnectionType type, const char* name);

  // The node's colour in the node editor.
  void setColour(int r, int g, int b) const { getGlobal()->setNodeColor3(nodeID, r, g, b); }
  // The channel group the node's animatable parameters belong to.
  LWChanGroupID channelGroup() const { return getGlobal()->chanGrp(nodeID); }
  void updatePreview() const { getGlobal()->UpdateNodePreview(nodeID); }

  NodeID nodeID;

 private:
  std::vector<std::unique_ptr<LWNodeInput>> inputs_;
  std::vector<std::unique_ptr<LWNodeOutput>> outputs_;
};

}  // namespace hostkit
