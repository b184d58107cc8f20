#pragma once

// The host's own nodes: constants and the spot's position and normal. They answer through the
// same setValue plug-ins use, so evaluating them exercises the plug-in path.

#include <lwnodes.h>

#include "lwhost/Node.h"

namespace lwhost {

class ConstantNode : public Node {
 public:
  // `value` is a buffer of `type` (NodeValue.h sizes).
  ConstantNode(NodeEditor& editor, std::string name, const char* userName, ConnectionType type,
               const char* outputName, const void* value);
  void evaluate(LWNodalAccess& access, NodeOutput& output, NodeValue value) noexcept override;

 private:
  alignas(double) unsigned char value_[sizeof(LWNodalMaterial)] = {};
};

class SpotNode : public Node {
 public:
  enum class Field { Position, Normal };  // wPos, wNorm
  SpotNode(NodeEditor& editor, std::string name, Field field);
  void evaluate(LWNodalAccess& access, NodeOutput& output, NodeValue value) noexcept override;

 private:
  Field field_;
};

}  // namespace lwhost
