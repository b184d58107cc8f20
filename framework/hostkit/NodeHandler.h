#pragma once

#include <lwnodes.h>

#include "hostkit/InstanceHandler.h"
#include "hostkit/ItemHandler.h"
#include "hostkit/LWNode.h"
#include "hostkit/NodeServices.h"
#include "hostkit/RenderHandler.h"

namespace hostkit {

// The base of every node: owns its connections on the host node given at creation.
class NodeHandler : public InstanceHandler, public LWNode, public virtual ItemHandler, public virtual RenderHandler {
 public:
  // `context` is the host node the instance belongs to.
  explicit NodeHandler(void* context, const char* hostClass = nullptr);

  // An input was connected (0), disconnected (1) or lost its upstream node (2).
  virtual int NodeInputEvent(NodeInputID input, LWNodalEvent event, ConnectionType type);
  // Writes the value of `output` for one shading sample, on any render thread. An override that
  // cannot throw may say noexcept: the host then reaches it without an exception guard.
  virtual void Evaluate(LWNodalAccess* /*access*/, NodeOutputID /*output*/, NodeValue /*value*/) {}
  virtual void CustomPreview(int /*width*/, int /*height*/) {}
  virtual unsigned int Flags() { return 0; }

  LWNodeInput* addColourInput(const char* name) { return addInput(NOT_COLOR, name, CB_NodeInputEvent); }
  LWNodeInput* addInput(ConnectionType type, const char* name) { return addInput(type, name, CB_NodeInputEvent); }
  using LWNode::addInput;

  // The input-event callback given to the host; the host passes the instance as user data.
  static int CB_NodeInputEvent(void* instance, NodeInputID input, LWNodalEvent event, ConnectionType type);

  LWNodeUtility utility;
  LWNodeOutputService outputService;
};

}  // namespace hostkit
