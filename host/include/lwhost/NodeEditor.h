#pragma once

#include <lwnodes.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "lwhost/Node.h"
#include "lwhost/NodeError.h"

namespace lwhost {

class Host;
class ModuleFile;
class PluginNode;

// The host's node editor: owns the nodes of one graph, connects them, and serves the node
// services plug-ins look up: "NodeFuncs", "NodeInputFuncs" and "NodeInputFuncs 2" (one table),
// "NodeOutputFuncs" and "NodeUtilityFuncs". One editor per host: it registers itself as the
// host's node editor component and withdraws those globals when it goes.
//
// Editing (add, connect, remove) happens on one thread; evaluation may run on many at once and
// neither allocates nor locks. Input events reach plug-ins during editing calls, after the graph
// is consistent again, so a plug-in may edit its own connectors from its event callback.
class NodeEditor {
 public:
  explicit NodeEditor(Host& host);
  ~NodeEditor();
  NodeEditor(const NodeEditor&) = delete;
  NodeEditor& operator=(const NodeEditor&) = delete;

  Host& host() const { return host_; }

  // A node of the module's NodeHandler `serverName`. Throws ModuleError if the module has no
  // such server and CreationError (with the plug-in's text) if it refuses; no node is left then.
  PluginNode& addPluginNode(const ModuleFile& module, const std::string& serverName);

  // Source nodes of the host, each with one output:
  Node& addColor(double r, double g, double b);  // "Color (n)", output "Color"
  Node& addScalar(double value);                 // "Scalar (n)", output "Scalar"
  Node& addVector(double x, double y, double z); // "Vector (n)", output "Vector"
  Node& addInteger(int value);                   // "Integer (n)", output "Integer"
  Node& addMaterial(const LWNodalMaterial& m);   // "Material (n)", output "Material"
  Node& addSpotPosition();  // "Spot Position (n)", output "Position": the sample's wPos
  Node& addSpotNormal();    // "Spot Normal (n)", output "Normal": the sample's wNorm

  // Removes a node: inputs it fed get NIE_INPUTNODEDESTROY and are left unconnected; its own
  // connections go silently; then a plug-in node's instance is destroyed.
  void removeNode(Node& node);
  const std::vector<std::unique_ptr<Node>>& nodes() const { return nodes_; }
  Node* findNode(const std::string& name) const;

  // Connects an output to an input. An input already connected elsewhere is disconnected
  // first (NIE_DISCONNECT, then NIE_CONNECT with the output's type). Reconnecting the same pair
  // does nothing. Throws NodeError for unknown connectors, types that do not convert
  // (NodeValue.h), or a connection that would make the graph loop.
  void connect(Node& from, const std::string& output, Node& to, const std::string& input);
  void connect(NodeOutput& output, NodeInput& input);
  // Breaks the input's connection, raising NIE_DISCONNECT; nothing if it has none.
  void disconnect(Node& to, const std::string& input);
  void disconnect(NodeInput& input);

  // Evaluates `output` of `node` for one sample into `value`, read as type `as`, along exactly
  // the path a plug-in's input evaluation takes. Returns false, leaving `value` alone, if the
  // node has no such output or its type does not convert to `as`. No allocation, no locks.
  // Static: a render thread needs no editor to hand, only the output.
  static bool evaluate(Node& node, const char* output, LWNodalAccess& access, void* value, ConnectionType as) noexcept;
  static bool evaluate(NodeOutput& output, LWNodalAccess& access, void* value, ConnectionType as) noexcept;

  // The service tables, as plug-ins get them.
  static const LWNodeFuncs* NodeFuncsTable();
  static const LWNodeInputFuncs* InputFuncsTable();
  static const LWNodeOutputFuncs* OutputFuncsTable();
  static const LWNodeUtilityFuncs* UtilityFuncsTable();

 private:
  friend class Node;
  // Events wait until an edit is complete.
  struct PendingEvent {
    NodeInput* input;
    std::uint64_t serial;
    LWNodalEvent event;
    ConnectionType type;
  };
  // Delivers events to inputs that still exist, in order.
  void raise(const std::vector<PendingEvent>& events);
  std::uint64_t nextSerial() { return ++serials_; }

  Node& adopt(std::unique_ptr<Node> node);
  std::string uniqueName(const std::string& baseName) const;
  bool isLive(const NodeInput* input, std::uint64_t serial) const;
  // Whether `other` is `node` or feeds it, directly or through other nodes.
  bool dependsOn(const Node& node, const Node& other) const;
  Node& own(Node& node) const;  // throws NodeError for a node of another editor
  void dropConnectionsSilently();

  Host& host_;
  std::vector<std::unique_ptr<Node>> nodes_;
  std::uint64_t serials_ = 0;
};

}  // namespace lwhost
