#pragma once

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

  lwhost::PluginNode& addMix() { return editor.addPluginNode(module, "TestMix"); }
  static MixInstance& mixOf(lwhost::PluginNode& node) {
    return *static_cast<MixInstance*>(node.instance().get());
  }
  const LWNodeInputFuncs& inputs() {
    return *static_cast<const LWNodeInputFuncs*>(host.globals().lookup(LWNODEINPUTFUNCS_GLOBAL, GFUSE_TRANSIENT));
  }
  const LWNodeOutputFuncs& outputs() {
    return *static_cast<const LWNodeOutputFuncs*>(host.globals().lookup(LWNODEOUTPUTFUNCS_GLOBAL, GFUSE_TRANSIENT));
  }
  const LWNodeFuncs& nodeFuncs() {
    return *static_cast<const LWNodeFuncs*>(host.globals().lookup(LWNODEFUNCS_GLOBAL, GFUSE_TRANSIENT));
  }
  const LWNodeUtilityFuncs& utility() {
    return *static_cast<const LWNodeUtilityFuncs*>(host.globals().lookup(LWNODEUTILITYFUNCS_GLOBAL, GFUSE_TRANSIENT));
  }
  // The instance's events since the last call, as (input name, event, type); userData checked.
  std::vector<std::string> takeEvents(lwhost::PluginNode& node) {
    MixInstance& mix = mixOf(node);
    std::vector<std::string> seen;
    for (int i = 0; i < mix.eventCount; ++i) {
      const MixEvent& e = mix.events[i];
      EXPECT_EQ(e.userData, &mix) << "user data of event " << i;
      std::string name = "(gone)";
      for (const auto& in : node.inputs())
        if (in.get() == e.input) name = in->name();
      seen.push_back(name + " " + std::to_string(e.event) + " " + std::to_string(e.type));
    }
    mix.eventCount = 0;
    return seen;
  }
};
