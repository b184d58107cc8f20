#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/NodalAccess.h"
#include "lwhost/NodeEditor.h"
#include "lwhost/PluginNode.h"
#include "nodes/NodeTestPlugin.h"

// A host with a node editor and the node test module. The editor goes first on teardown: its
// plug-in nodes need the module's code.
class NodeEditorTest : public ::testing::Test {
 protected:
  lwhost::Host host;
  lwhost::ModuleFile module{NODE_TEST_MODULE_PATH};
  lwhost::NodeEditor editor{host};
  LWNodalAccess access = lwhost::MakeNodalAccess();
  // The services' tables (the test module fetches them by name).
  const LWNodeInputFuncs& inputs = *lwhost::NodeEditor::InputFuncsTable();
  const LWNodeOutputFuncs& outputs = *lwhost::NodeEditor::OutputFuncsTable();
  const LWNodeFuncs& nodeFuncs = *lwhost::NodeEditor::NodeFuncsTable();

  lwhost::PluginNode& addMix() { return editor.addPluginNode(module, "TestMix"); }
  static MixInstance& mixOf(lwhost::PluginNode& node) { return *static_cast<MixInstance*>(node.instance().get()); }

  // The instance's input events since the last call.
  std::vector<std::string> takeEvents(lwhost::PluginNode& node) {
    MixInstance& mix = mixOf(node);
    std::vector<std::string> seen(mix.events, mix.events + mix.eventCount);
    mix.eventCount = 0;
    return seen;
  }
  // An output's value as `type`, starting from `value`; evaluation must succeed.
  template <class T>
  T evaluated(lwhost::Node& node, const char* output, T value, ConnectionType type) {
    EXPECT_TRUE(editor.evaluate(node, output, access, &value, type)) << output;
    return value;
  }
  // The host's messages since the last call.
  std::vector<std::string> takeMessages() {
    std::vector<std::string> texts;
    for (const lwhost::Message& m : host.messages().messages()) texts.push_back(m.first);
    host.messages().clear();
    return texts;
  }
};
