#include "SourceNodes.h"

#include "lwhost/NodeEditor.h"
#include "lwhost/NodeValue.h"
#include "ValueHandle.h"

namespace lwhost {

ConstantNode::ConstantNode(NodeEditor& editor, std::string name, const char* userName, ConnectionType type,
                           const char* outputName, const void* value)
    : Node(editor, std::move(name), userName) {
  CopyNodeValue(value_, value, type);
  addOutput(type, outputName);
}

void ConstantNode::evaluate(LWNodalAccess&, NodeOutput&, NodeValue value) noexcept {
  SetNodeValue(value, value_);
}

SpotNode::SpotNode(NodeEditor& editor, std::string name, Field field)
    : Node(editor, std::move(name), field == Field::Position ? "Spot Position" : "Spot Normal"), field_(field) {
  addOutput(NOT_VECTOR, field == Field::Position ? "Position" : "Normal");
}

void SpotNode::evaluate(LWNodalAccess& access, NodeOutput&, NodeValue value) noexcept {
  SetNodeValue(value, field_ == Field::Position ? access.wPos : access.wNorm);
}

}  // namespace lwhost
