// "NodeFuncs", "NodeInputFuncs 2" and "NodeOutputFuncs": what plug-ins call with their node,
// input, output and value handles. Every handle is checked for kind, so a null or mixed-up id
// gets the failure value instead of a crash. evaluate, setValue, getValue and getType run on
// render threads and touch nothing shared but the evaluation counters.

#include <cstring>

#include "CEntryGuard.h"
#include "ValueHandle.h"
#include "lwhost/Node.h"
#include "lwhost/NodeEditor.h"
#include "lwhost/NodeValue.h"

namespace lwhost {

bool EvaluateOutput(NodeOutput& output, LWNodalAccess& access, void* target, ConnectionType requested) noexcept {
  const ConnectionType produced = output.type();
  if (!target || !CanConvert(produced, requested)) return false;
  ValueHandle handle;
  handle.requested = requested;
  handle.produced = produced;
  handle.target = target;
  Node& node = output.node();
  node.countEvaluation();
  node.evaluate(access, output, &handle);
  if (handle.written && !handle.direct()) ConvertNodeValue(handle.staging, produced, target, requested);
  return true;
}

namespace {

// ---- inputs ----

NodeInputID InCreate(NodeID nodeID, ConnectionType type, const char* name, NodeInputEvent* event) {
  return Guarded<NodeInputID>(nullptr, [&]() -> NodeInputID {
    Node* node = Node::FromID(nodeID);
    return node ? node->addInput(type, name, event) : nullptr;
  });
}

void InDestroy(NodeID nodeID, NodeInputID inputID) {
  Guarded([&] {
    Node* node = Node::FromID(nodeID);
    NodeInput* input = NodeInput::FromID(inputID);
    if (node && input && &input->node() == node) node->removeInput(input);
  });
}

int InEvaluate(NodeInputID inputID, LWNodalAccess* access, void* value) noexcept {
  NodeInput* input = NodeInput::FromID(inputID);
  if (!input || !access || !value) return 0;
  NodeOutput* source = input->source();
  if (!source) return 0;
  EvaluateOutput(*source, *access, value, input->type());
  return 1;
}

int InCheck(NodeInputID inputID) noexcept {
  NodeInput* input = NodeInput::FromID(inputID);
  return input && input->connected() ? 1 : 0;
}

NodeInputID InAt(const Node& node, int index) noexcept {  // 1-based
  const auto& list = node.inputs();
  return index >= 1 && index <= static_cast<int>(list.size()) ? list[index - 1].get() : nullptr;
}

NodeInputID InFirst(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? InAt(*node, 1) : nullptr;
}

NodeInputID InNext(NodeInputID inputID) noexcept {
  NodeInput* input = NodeInput::FromID(inputID);
  return input ? InAt(input->node(), input->node().indexOf(input) + 1) : nullptr;
}

NodeInputID InPrevious(NodeInputID inputID) noexcept {
  NodeInput* input = NodeInput::FromID(inputID);
  return input ? InAt(input->node(), input->node().indexOf(input) - 1) : nullptr;
}

int InCount(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? static_cast<int>(node->inputs().size()) : 0;
}

NodeInputID InByIndex(NodeID nodeID, int index) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? InAt(*node, index) : nullptr;
}

int InGetIndex(NodeID nodeID, NodeInputID inputID) noexcept {
  Node* node = Node::FromID(nodeID);
  NodeInput* input = NodeInput::FromID(inputID);
  return node && input ? node->indexOf(input) : 0;
}

void InDisconnect(NodeID nodeID, NodeInputID inputID) {
  Guarded([&] {
    Node* node = Node::FromID(nodeID);
    NodeInput* input = NodeInput::FromID(inputID);
    if (node && input && &input->node() == node) node->editor().disconnect(*input);
  });
}

NodeID InNode(NodeInputID inputID) noexcept {
  NodeInput* input = NodeInput::FromID(inputID);
  return input ? input->node().id() : nullptr;
}

// ---- outputs ----

NodeOutputID OutCreate(NodeID nodeID, ConnectionType type, const char* name) {
  return Guarded<NodeOutputID>(nullptr, [&]() -> NodeOutputID {
    Node* node = Node::FromID(nodeID);
    return node ? node->addOutput(type, name) : nullptr;
  });
}

void OutDestroy(NodeID nodeID, NodeOutputID outputID) {
  Guarded([&] {
    Node* node = Node::FromID(nodeID);
    NodeOutput* output = NodeOutput::FromID(outputID);
    if (node && output && &output->node() == node) node->removeOutput(output);
  });
}

void OutSetValue(NodeValue value, void* data) noexcept {
  ValueHandle* handle = ValueHandle::FromValue(value);
  if (!handle || !data) return;
  void* destination = handle->direct() ? handle->target : handle->staging;
  std::memmove(destination, data, NodeValueSize(handle->produced));
  handle->written = true;
}

// The buffer the value travels in: the requester's when the types agree, else the staging
// buffer in the output's type. A node may write through it, so it counts as written (the
// staging buffer starts zeroed for that).
void* OutGetValue(NodeValue value) noexcept {
  ValueHandle* handle = ValueHandle::FromValue(value);
  if (!handle) return nullptr;
  if (handle->direct()) return handle->target;
  if (!handle->written) std::memset(handle->staging, 0, sizeof handle->staging);
  handle->written = true;
  return handle->staging;
}

ConnectionType OutGetType(NodeValue value) noexcept {
  ValueHandle* handle = ValueHandle::FromValue(value);
  return handle ? handle->requested : static_cast<ConnectionType>(0);
}

NodeOutputID OutAt(const Node& node, int index) noexcept {  // 1-based
  const auto& list = node.outputs();
  return index >= 1 && index <= static_cast<int>(list.size()) ? list[index - 1].get() : nullptr;
}

NodeOutputID OutFirst(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? OutAt(*node, 1) : nullptr;
}

NodeOutputID OutNext(NodeOutputID outputID) noexcept {
  NodeOutput* output = NodeOutput::FromID(outputID);
  return output ? OutAt(output->node(), output->node().indexOf(output) + 1) : nullptr;
}

NodeOutputID OutPrevious(NodeOutputID outputID) noexcept {
  NodeOutput* output = NodeOutput::FromID(outputID);
  return output ? OutAt(output->node(), output->node().indexOf(output) - 1) : nullptr;
}

int OutCount(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? static_cast<int>(node->outputs().size()) : 0;
}

NodeOutputID OutByIndex(NodeID nodeID, int index) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? OutAt(*node, index) : nullptr;
}

int OutGetIndex(NodeID nodeID, NodeOutputID outputID) noexcept {
  Node* node = Node::FromID(nodeID);
  NodeOutput* output = NodeOutput::FromID(outputID);
  return node && output ? node->indexOf(output) : 0;
}

NodeID OutNode(NodeOutputID outputID) noexcept {
  NodeOutput* output = NodeOutput::FromID(outputID);
  return output ? output->node().id() : nullptr;
}

// ---- nodes ----

const char* NodeName(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? node->name().c_str() : nullptr;
}

const char* NodeServerUserName(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? node->serverUserName().c_str() : nullptr;
}

LWChanGroupID NodeChanGrp(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? node->channelGroup() : nullptr;
}

void NodeSetColor(NodeID nodeID, int rgb[3]) noexcept {
  Node* node = Node::FromID(nodeID);
  if (node && rgb) node->setColor(rgb[0], rgb[1], rgb[2]);
}

void NodeSetColor3(NodeID nodeID, int r, int g, int b) noexcept {
  if (Node* node = Node::FromID(nodeID)) node->setColor(r, g, b);
}

void NodeSetPreviewType(NodeID nodeID, NodePreviewType type) noexcept {
  Node* node = Node::FromID(nodeID);
  if (node && type >= NPT_RENDER && type <= NPT_OFF) node->setPreviewType(type);
}

void NodeUpdatePreview(NodeID nodeID) noexcept {
  if (Node* node = Node::FromID(nodeID)) node->requestPreviewUpdate();
}

const LWNodeInputFuncs kInputFuncs = {InCreate, InDestroy,  InEvaluate, InCheck,    InFirst,      InNext,
                                      InPrevious, InCount, InByIndex, InGetIndex, InDisconnect, InNode};

const LWNodeOutputFuncs kOutputFuncs = {OutCreate, OutDestroy, OutSetValue, OutGetValue,
                                        OutGetType, OutFirst,  OutNext,     OutPrevious,
                                        OutCount,  OutByIndex, OutGetIndex, OutNode};

const LWNodeFuncs kNodeFuncs = {NodeName,     NodeServerUserName, NodeChanGrp,     NodeSetColor,
                                NodeSetColor3, NodeSetPreviewType, NodeUpdatePreview};

}  // namespace

const LWNodeFuncs* NodeEditor::NodeFuncsTable() { return &kNodeFuncs; }
const LWNodeInputFuncs* NodeEditor::InputFuncsTable() { return &kInputFuncs; }
const LWNodeOutputFuncs* NodeEditor::OutputFuncsTable() { return &kOutputFuncs; }

}  // namespace lwhost
