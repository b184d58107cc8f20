#pragma once

#include <lwenvel.h>
#include <lwnodes.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "lwhost/NodeConnector.h"

namespace lwhost {

class NodeEditor;

// A node in the editor: its name as the editor shows it ("Scalar (2)"), its connectors in
// creation order, the look plug-ins may set, its channel group, and how often the host asked
// it to evaluate. Plug-ins know it by id() (their NodeID). Nodes are made, connected and
// removed through the NodeEditor that owns them.
class Node {
 public:
  virtual ~Node();
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  NodeEditor& editor() const { return *editor_; }
  NodeID id() { return &handle_; }
  // This node if `id` is one, else null (null or a handle of another kind).
  static Node* FromID(NodeID id);

  const std::string& name() const { return name_; }
  const std::string& serverUserName() const { return userName_; }

  const std::vector<std::unique_ptr<NodeInput>>& inputs() const { return inputs_; }
  const std::vector<std::unique_ptr<NodeOutput>>& outputs() const { return outputs_; }
  // By name; null if there is none.
  NodeInput* input(const std::string& name) const;
  NodeOutput* output(const std::string& name) const;
  // By name without building a string, so the evaluation path can use it.
  NodeOutput* output(const char* name) const;
  // 1-based as the SDK counts; 0 / null when not found.
  int indexOf(const NodeInput* input) const;
  int indexOf(const NodeOutput* output) const;

  // What the input and output functions do for plug-ins. Creation returns null for a type
  // outside ConnectionType. Removing an input drops its connection silently (its own node
  // asked); removing an output tells the inputs it fed that they were disconnected.
  NodeInput* addInput(ConnectionType type, const char* name, NodeInputEvent* event);
  void removeInput(NodeInput* input);
  NodeOutput* addOutput(ConnectionType type, const char* name);
  void removeOutput(NodeOutput* output);

  // Look, as set through the node functions.
  std::array<int, 3> color() const { return color_; }
  void setColor(int r, int g, int b) { color_ = {r, g, b}; }
  NodePreviewType previewType() const { return previewType_; }
  void setPreviewType(NodePreviewType type) { previewType_ = type; }
  int previewUpdates() const { return previewUpdates_; }
  void requestPreviewUpdate() { ++previewUpdates_; }

  // The group the node's animated parameters live in: made through "Animation Envelopes"
  // when the host serves it, else a handle of our own, unique per node.
  LWChanGroupID channelGroup() const { return group_; }

  // How many times the host asked this node for an output value (from any thread).
  std::uint64_t evaluations() const { return evaluations_.load(std::memory_order_relaxed); }
  void resetEvaluations() { evaluations_.store(0, std::memory_order_relaxed); }
  void countEvaluation() { evaluations_.fetch_add(1, std::memory_order_relaxed); }

  // Writes the value of `output` for one shading sample through the output functions'
  // setValue, or leaves `value` alone. Called on render threads: no allocation, no locks.
  virtual void evaluate(LWNodalAccess& access, NodeOutput& output, NodeValue value) noexcept = 0;
  // What input events pass as user data: the plug-in's instance, null for host nodes.
  virtual void* eventUserData() const { return nullptr; }

 protected:
  Node(NodeEditor& editor, std::string name, std::string userName);

 private:
  struct Handle {
    std::uint32_t tag;
    Node* node;
  };
  static constexpr std::uint32_t kTag = 0x4E4F4445u;  // "NODE"

  Handle handle_;
  NodeEditor* editor_;
  std::string name_;
  std::string userName_;
  std::vector<std::unique_ptr<NodeInput>> inputs_;
  std::vector<std::unique_ptr<NodeOutput>> outputs_;
  std::array<int, 3> color_{0, 0, 0};
  NodePreviewType previewType_ = NPT_RENDER;
  int previewUpdates_ = 0;
  LWChanGroupID group_ = nullptr;
  const LWEnvelopeFuncs* groupMaker_ = nullptr;  // set when group_ came from "Animation Envelopes"
  char ownGroup_ = 0;                            // its address is the group otherwise
  std::atomic<std::uint64_t> evaluations_{0};
};

}  // namespace lwhost
