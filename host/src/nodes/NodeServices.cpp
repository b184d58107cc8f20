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

namespace {

// The evaluation proper, for a pairing of types already known to convert: a connection's
// were checked when it was made, so the input path comes here directly.
void EvaluateConvertible(NodeOutput& output, LWNodalAccess& access, void* target, ConnectionType requested) noexcept {
  ValueHandle handle;
  handle.requested = requested;
  handle.produced = output.type();
  handle.target = target;
  Node& node = output.node();
  node.countEvaluation();
  node.evaluate(access, output, &handle);
  if (handle.written && !handle.direct()) ConvertNodeValue(handle.staging, handle.produced, target, requested);
}

}  // namespace

bool NodeEditor::evaluate(NodeOutput& output, LWNodalAccess& access, void* target,
                          ConnectionType requested) noexcept {
  if (!target || !CanConvert(output.type(), requested)) return false;
  EvaluateConvertible(output, access, target, requested);
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
  EvaluateConvertible(*source, *access, value, input->type());
  return 1;
}

// Walking a node's inputs or outputs: both lists work alike, 1-based as the SDK counts.
template <class C>
const std::vector<std::unique_ptr<C>>& ListOf(const Node& node);
template <>
const std::vector<std::unique_ptr<NodeInput>>& ListOf<NodeInput>(const Node& node) {
  return node.inputs();
}
template <>
const std::vector<std::unique_ptr<NodeOutput>>& ListOf<NodeOutput>(const Node& node) {
  return node.outputs();
}

template <class C>
C* At(const Node& node, int index) noexcept {
  const auto& list = ListOf<C>(node);
  return index >= 1 && index <= static_cast<int>(list.size()) ? list[index - 1].get() : nullptr;
}

template <class C>
void* First(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? At<C>(*node, 1) : nullptr;
}

template <class C, int step>
void* Step(void* id) noexcept {
  C* connector = C::FromID(id);
  return connector ? At<C>(connector->node(), connector->node().indexOf(connector) + step) : nullptr;
}

template <class C>
int Count(NodeID nodeID) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? static_cast<int>(ListOf<C>(*node).size()) : 0;
}

template <class C>
void* ByIndex(NodeID nodeID, int index) noexcept {
  Node* node = Node::FromID(nodeID);
  return node ? At<C>(*node, index) : nullptr;
}

template <class C>
int GetIndex(NodeID nodeID, void* id) noexcept {
  Node* node = Node::FromID(nodeID);
  C* connector = C::FromID(id);
  return node && connector ? node->indexOf(connector) : 0;
}

int InCheck(NodeInputID inputID) noexcept {
  NodeInput* input = NodeInput::FromID(inputID);
  return input && input->connected() ? 1 : 0;
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

const LWNodeInputFuncs kInputFuncs = {InCreate,
                                      InDestroy,
                                      InEvaluate,
                                      InCheck,
                                      First<NodeInput>,
                                      Step<NodeInput, 1>,
                                      Step<NodeInput, -1>,
                                      Count<NodeInput>,
                                      ByIndex<NodeInput>,
                                      GetIndex<NodeInput>,
                                      InDisconnect,
                                      InNode};

const LWNodeOutputFuncs kOutputFuncs = {OutCreate,
                                        OutDestroy,
                                        SetNodeValue,
                                        OutGetValue,
                                        OutGetType,
                                        First<NodeOutput>,
                                        Step<NodeOutput, 1>,
                                        Step<NodeOutput, -1>,
                                        Count<NodeOutput>,
                                        ByIndex<NodeOutput>,
                                        GetIndex<NodeOutput>,
                                        OutNode};

const LWNodeFuncs kNodeFuncs = {NodeName,     NodeServerUserName, NodeChanGrp,     NodeSetColor,
                                NodeSetColor3, NodeSetPreviewType, NodeUpdatePreview};

}  // namespace

const LWNodeFuncs* NodeEditor::NodeFuncsTable() { return &kNodeFuncs; }
const LWNodeInputFuncs* NodeEditor::InputFuncsTable() { return &kInputFuncs; }
const LWNodeOutputFuncs* NodeEditor::OutputFuncsTable() { return &kOutputFuncs; }

}  // namespace lwhost
