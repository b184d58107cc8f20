#include "lwhost/Node.h"

#include <lwserver.h>

#include <algorithm>
#include <cstring>

#include "lwhost/Host.h"
#include "lwhost/NodeEditor.h"
#include "lwhost/NodeValue.h"

namespace lwhost {

namespace {

const LWEnvelopeFuncs* EnvelopeService(Host& host) {
  return static_cast<const LWEnvelopeFuncs*>(host.globals().peek(LWENVELOPEFUNCS_GLOBAL));
}

bool ValidType(ConnectionType type) { return type >= NOT_COLOR && type <= NOT_MATERIAL; }

template <class T>
int IndexIn(const std::vector<std::unique_ptr<T>>& list, const T* item) {
  for (std::size_t i = 0; i < list.size(); ++i)
    if (list[i].get() == item) return static_cast<int>(i) + 1;
  return 0;
}

}  // namespace

Node::Node(NodeEditor& editor, std::string name, std::string userName)
    : handle_{kTag, this}, editor_(&editor), name_(std::move(name)), userName_(std::move(userName)) {
  const LWEnvelopeFuncs* envelopes = EnvelopeService(editor.host());
  if (envelopes && envelopes->createGroup) {
    group_ = envelopes->createGroup(nullptr, name_.c_str());
    if (group_) groupMaker_ = envelopes;
  }
  if (!group_) group_ = &ownGroup_;
}

Node::~Node() {
  // Only through the service that made the group, and only while the host still serves it.
  if (groupMaker_ && groupMaker_->destroyGroup && EnvelopeService(editor_->host()) == groupMaker_)
    groupMaker_->destroyGroup(group_);
}

Node* Node::FromID(NodeID id) {
  auto* handle = static_cast<Handle*>(id);
  return handle && handle->tag == kTag ? handle->node : nullptr;
}

NodeInput* Node::input(const std::string& name) const {
  for (const auto& in : inputs_)
    if (in->name() == name) return in.get();
  return nullptr;
}

NodeOutput* Node::output(const std::string& name) const { return output(name.c_str()); }

NodeOutput* Node::output(const char* name) const {
  if (!name) return nullptr;
  for (const auto& out : outputs_)
    if (std::strcmp(out->name().c_str(), name) == 0) return out.get();
  return nullptr;
}

int Node::indexOf(const NodeInput* input) const { return IndexIn(inputs_, input); }
int Node::indexOf(const NodeOutput* output) const { return IndexIn(outputs_, output); }

NodeInput* Node::addInput(ConnectionType type, const char* name, NodeInputEvent* event) {
  if (!ValidType(type)) return nullptr;
  inputs_.push_back(std::unique_ptr<NodeInput>(
      new NodeInput(*this, type, name ? name : "", event, editor_->nextSerial())));
  return inputs_.back().get();
}

void Node::removeInput(NodeInput* input) {
  auto it = std::find_if(inputs_.begin(), inputs_.end(), [&](const auto& p) { return p.get() == input; });
  if (it == inputs_.end()) return;
  if (NodeOutput* source = input->source_) {
    auto& targets = source->targets_;
    targets.erase(std::remove(targets.begin(), targets.end(), input), targets.end());
  }
  inputs_.erase(it);
}

NodeOutput* Node::addOutput(ConnectionType type, const char* name) {
  if (!ValidType(type)) return nullptr;
  outputs_.push_back(std::unique_ptr<NodeOutput>(new NodeOutput(*this, type, name ? name : "")));
  return outputs_.back().get();
}

void Node::removeOutput(NodeOutput* output) {
  auto it = std::find_if(outputs_.begin(), outputs_.end(), [&](const auto& p) { return p.get() == output; });
  if (it == outputs_.end()) return;
  std::vector<NodeEditor::PendingEvent> events;
  for (NodeInput* target : output->targets_) {
    target->source_ = nullptr;
    events.push_back({target, target->serial(), NIE_DISCONNECT, static_cast<ConnectionType>(0)});
  }
  outputs_.erase(it);
  editor_->raise(events);
}

}  // namespace lwhost
