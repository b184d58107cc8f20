#pragma once

#include <lwnodes.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lwhost {

class Node;
class NodeOutput;

// An input of a node. Plug-ins hold its address as their NodeInputID. It has at most one
// connection; the node editor makes and breaks it.
class NodeInput {
 public:
  Node& node() const { return *node_; }
  const std::string& name() const { return name_; }
  ConnectionType type() const { return type_; }
  NodeOutput* source() const { return source_; }
  bool connected() const { return source_ != nullptr; }
  NodeInputEvent* eventFunction() const { return event_; }
  // Distinguishes this input from a later one that happens to get the same address.
  std::uint64_t serial() const { return serial_; }

  // This input if `id` is one; null for null or a handle of another kind (node, output...).
  static NodeInput* FromID(NodeInputID id) {
    auto* input = static_cast<NodeInput*>(id);
    return input && input->tag_ == kTag ? input : nullptr;
  }

 private:
  friend class Node;
  friend class NodeEditor;
  static constexpr std::uint32_t kTag = 0x4E494E50u;  // "NINP"

  NodeInput(Node& node, ConnectionType type, std::string name, NodeInputEvent* event, std::uint64_t serial)
      : node_(&node), name_(std::move(name)), type_(type), event_(event), serial_(serial) {}

  std::uint32_t tag_ = kTag;
  Node* node_;
  std::string name_;
  ConnectionType type_;
  NodeInputEvent* event_;
  NodeOutput* source_ = nullptr;
  std::uint64_t serial_;
};

// An output of a node; plug-ins hold its address as their NodeOutputID. It feeds any number
// of inputs.
class NodeOutput {
 public:
  Node& node() const { return *node_; }
  const std::string& name() const { return name_; }
  ConnectionType type() const { return type_; }
  // The inputs it feeds, in order of connection.
  const std::vector<NodeInput*>& targets() const { return targets_; }

  // This output if `id` is one, else null.
  static NodeOutput* FromID(NodeOutputID id) {
    auto* output = static_cast<NodeOutput*>(id);
    return output && output->tag_ == kTag ? output : nullptr;
  }

 private:
  friend class Node;
  friend class NodeEditor;
  static constexpr std::uint32_t kTag = 0x4E4F5554u;  // "NOUT"

  NodeOutput(Node& node, ConnectionType type, std::string name)
      : node_(&node), name_(std::move(name)), type_(type) {}

  std::uint32_t tag_ = kTag;
  Node* node_;
  std::string name_;
  ConnectionType type_;
  std::vector<NodeInput*> targets_;
};

}  // namespace lwhost
