#include "lwhost/NodeEditor.h"

#include <algorithm>

#include "SourceNodes.h"
#include "ValueHandle.h"
#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/NodeValue.h"
#include "lwhost/PluginNode.h"

namespace lwhost {

namespace {

// The unversioned input name is what hosts before 9.5 served; 9.6 added nothing a plug-in can
// tell apart, so both names get one table.
const char* const kInputGlobals[] = {"NodeInputFuncs", LWNODEINPUTFUNCS_GLOBAL};

void* Service(const void* table) { return const_cast<void*>(table); }

std::string Describe(const NodeOutput& output) {
  return std::string(ConnectionTypeName(output.type())) + " output \"" + output.name() + "\" of \"" +
         output.node().name() + "\"";
}

std::string Describe(const NodeInput& input) {
  return std::string(ConnectionTypeName(input.type())) + " input \"" + input.name() + "\" of \"" +
         input.node().name() + "\"";
}

const ConnectionType kNoType = static_cast<ConnectionType>(0);

}  // namespace

NodeEditor::NodeEditor(Host& host) : host_(host) {
  host_.attach(this);
  host_.globals().provide(LWNODEFUNCS_GLOBAL, Service(NodeFuncsTable()));
  for (const char* name : kInputGlobals) host_.globals().provide(name, Service(InputFuncsTable()));
  host_.globals().provide(LWNODEOUTPUTFUNCS_GLOBAL, Service(OutputFuncsTable()));
  host_.globals().provide(LWNODEUTILITYFUNCS_GLOBAL, Service(UtilityFuncsTable()));
}

NodeEditor::~NodeEditor() {
  // Tearing down the whole graph is not an edit: nobody hears about connections going.
  dropConnectionsSilently();
  while (!nodes_.empty()) nodes_.pop_back();
  host_.globals().provide(LWNODEFUNCS_GLOBAL, nullptr);
  for (const char* name : kInputGlobals) host_.globals().provide(name, nullptr);
  host_.globals().provide(LWNODEOUTPUTFUNCS_GLOBAL, nullptr);
  host_.globals().provide(LWNODEUTILITYFUNCS_GLOBAL, nullptr);
  host_.detach(this);
}

PluginNode& NodeEditor::addPluginNode(const ModuleFile& module, const std::string& serverName) {
  const ServerRecord& record = module.require(LWNODE_HCLASS, serverName);
  const char* tagged = TagText(record, SRVTAG_USERNAME);
  const std::string userName = tagged ? tagged : serverName;
  std::unique_ptr<PluginNode> made(new PluginNode(*this, module, record, uniqueName(userName), userName));
  PluginNode& node = *made;
  adopt(std::move(made));
  try {
    node.createInstance();
  } catch (...) {
    // Whatever connectors the plug-in added before refusing go with the node; nothing can
    // have been connected to them yet.
    nodes_.erase(std::find_if(nodes_.begin(), nodes_.end(), [&](const auto& p) { return p.get() == &node; }));
    throw;
  }
  return node;
}

Node& NodeEditor::adopt(std::unique_ptr<Node> node) {
  nodes_.push_back(std::move(node));
  return *nodes_.back();
}

Node& NodeEditor::addColor(double r, double g, double b) {
  const double v[3] = {r, g, b};
  return adopt(std::make_unique<ConstantNode>(*this, uniqueName("Color"), "Color", NOT_COLOR, "Color", v));
}

Node& NodeEditor::addScalar(double value) {
  return adopt(std::make_unique<ConstantNode>(*this, uniqueName("Scalar"), "Scalar", NOT_SCALAR, "Scalar", &value));
}

Node& NodeEditor::addVector(double x, double y, double z) {
  const double v[3] = {x, y, z};
  return adopt(std::make_unique<ConstantNode>(*this, uniqueName("Vector"), "Vector", NOT_VECTOR, "Vector", v));
}

Node& NodeEditor::addInteger(int value) {
  return adopt(
      std::make_unique<ConstantNode>(*this, uniqueName("Integer"), "Integer", NOT_INTEGER, "Integer", &value));
}

Node& NodeEditor::addMaterial(const LWNodalMaterial& m) {
  return adopt(
      std::make_unique<ConstantNode>(*this, uniqueName("Material"), "Material", NOT_MATERIAL, "Material", &m));
}

Node& NodeEditor::addSpotPosition() {
  return adopt(std::make_unique<SpotNode>(*this, uniqueName("Spot Position"), SpotNode::Field::Position));
}

Node& NodeEditor::addSpotNormal() {
  return adopt(std::make_unique<SpotNode>(*this, uniqueName("Spot Normal"), SpotNode::Field::Normal));
}

void NodeEditor::removeNode(Node& node) {
  own(node);
  std::size_t fed = 0;
  for (const auto& output : node.outputs()) fed += output->targets_.size();
  std::vector<PendingEvent> events;
  events.reserve(fed);

  for (const auto& output : node.outputs()) {
    for (NodeInput* target : output->targets_) {
      target->source_ = nullptr;
      events.push_back({target, target->serial(), NIE_INPUTNODEDESTROY, kNoType});
    }
    output->targets_.clear();
  }
  for (const auto& input : node.inputs()) {
    if (NodeOutput* source = input->source_) {
      auto& targets = source->targets_;
      targets.erase(std::remove(targets.begin(), targets.end(), input.get()), targets.end());
      input->source_ = nullptr;
    }
  }
  auto it = std::find_if(nodes_.begin(), nodes_.end(), [&](const auto& p) { return p.get() == &node; });
  std::unique_ptr<Node> doomed = std::move(*it);
  nodes_.erase(it);
  doomed.reset();  // a plug-in node's instance goes here, before anyone hears of it
  raise(events);
}

Node* NodeEditor::findNode(const std::string& name) const {
  for (const auto& node : nodes_)
    if (node->name() == name) return node.get();
  return nullptr;
}

void NodeEditor::connect(Node& from, const std::string& output, Node& to, const std::string& input) {
  NodeOutput* out = own(from).output(output);
  if (!out) throw NodeError("node \"" + from.name() + "\" has no output \"" + output + "\"");
  NodeInput* in = own(to).input(input);
  if (!in) throw NodeError("node \"" + to.name() + "\" has no input \"" + input + "\"");
  connect(*out, *in);
}

void NodeEditor::connect(NodeOutput& output, NodeInput& input) {
  own(output.node());
  own(input.node());
  if (input.source_ == &output) return;
  if (!CanConvert(output.type(), input.type()))
    throw NodeError("cannot connect the " + Describe(output) + " to the " + Describe(input) +
                    ": the types do not convert");
  if (dependsOn(output.node(), input.node()))
    throw NodeError("cannot connect the " + Describe(output) + " to the " + Describe(input) +
                    ": the graph would loop");

  std::vector<PendingEvent> events;
  events.reserve(2);
  output.targets_.reserve(output.targets_.size() + 1);
  if (NodeOutput* previous = input.source_) {
    auto& targets = previous->targets_;
    targets.erase(std::remove(targets.begin(), targets.end(), &input), targets.end());
    events.push_back({&input, input.serial(), NIE_DISCONNECT, kNoType});
  }
  input.source_ = &output;
  output.targets_.push_back(&input);
  events.push_back({&input, input.serial(), NIE_CONNECT, output.type()});
  raise(events);
}

void NodeEditor::disconnect(Node& to, const std::string& input) {
  NodeInput* in = own(to).input(input);
  if (!in) throw NodeError("node \"" + to.name() + "\" has no input \"" + input + "\"");
  disconnect(*in);
}

void NodeEditor::disconnect(NodeInput& input) {
  NodeOutput* source = input.source_;
  if (!source) return;
  std::vector<PendingEvent> events{{&input, input.serial(), NIE_DISCONNECT, kNoType}};
  auto& targets = source->targets_;
  targets.erase(std::remove(targets.begin(), targets.end(), &input), targets.end());
  input.source_ = nullptr;
  raise(events);
}

bool NodeEditor::evaluate(Node& node, const char* output, LWNodalAccess& access, void* value,
                          ConnectionType as) noexcept {
  NodeOutput* out = node.output(output);
  return out && evaluate(*out, access, value, as);
}

void NodeEditor::raise(const std::vector<PendingEvent>& events) {
  // A callback may destroy inputs, its own or others', so each one is looked up again first.
  for (const PendingEvent& e : events) {
    if (!isLive(e.input, e.serial)) continue;
    NodeInputEvent* callback = e.input->eventFunction();
    if (callback) callback(e.input->node().eventUserData(), e.input, e.event, e.type);
  }
}

std::string NodeEditor::uniqueName(const std::string& baseName) const {
  for (int n = 1;; ++n) {
    std::string name = baseName + " (" + std::to_string(n) + ")";
    if (!findNode(name)) return name;
  }
}

bool NodeEditor::isLive(const NodeInput* input, std::uint64_t serial) const {
  for (const auto& node : nodes_)
    for (const auto& in : node->inputs())
      if (in.get() == input) return in->serial() == serial;
  return false;
}

bool NodeEditor::dependsOn(const Node& node, const Node& other) const {
  std::vector<const Node*> pending{&node};
  std::vector<const Node*> seen;
  while (!pending.empty()) {
    const Node* n = pending.back();
    pending.pop_back();
    if (n == &other) return true;
    if (std::find(seen.begin(), seen.end(), n) != seen.end()) continue;
    seen.push_back(n);
    for (const auto& in : n->inputs())
      if (in->source_) pending.push_back(&in->source_->node());
  }
  return false;
}

Node& NodeEditor::own(Node& node) const {
  const bool mine = std::any_of(nodes_.begin(), nodes_.end(), [&](const auto& p) { return p.get() == &node; });
  if (!mine)
    throw NodeError("node \"" + node.name() + "\" does not belong to this editor");
  return node;
}

void NodeEditor::dropConnectionsSilently() {
  for (const auto& node : nodes_) {
    for (const auto& in : node->inputs()) in->source_ = nullptr;
    for (const auto& out : node->outputs()) out->targets_.clear();
  }
}

}  // namespace lwhost
