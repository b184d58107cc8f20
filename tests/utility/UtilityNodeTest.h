#pragma once

#include <gtest/gtest.h>
#include <lwnodes.h>

#include <string>
#include <vector>

#include "lwhost/NodalAccess.h"
#include "lwhost/NodeEditor.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "support/ModulePaths.h"

// The host's output functions with setValue watched: every value a plug-in hands over is
// counted, then passed on. Plug-ins keep the table they were given at creation, so the spy
// must be installed before the nodes it watches are made; its storage is static because
// nodes may outlive a test's locals.
struct OutputSpy {
  static inline LWNodeOutputFuncs table{};
  static inline int writes = 0;

  static void SetValue(NodeValue value, void* data) {
    ++writes;
    lwhost::NodeEditor::OutputFuncsTable()->setValue(value, data);
  }
  static void Install(lwhost::Host& host) {
    table = *lwhost::NodeEditor::OutputFuncsTable();
    table.setValue = SetValue;
    writes = 0;
    host.globals().provide(LWNODEOUTPUTFUNCS_GLOBAL, &table);
  }
};

// A headless Layout with vorn.p loaded.
class UtilityNodeTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  lwhost::NodeEditor& editor = session.nodes();
  LWNodalAccess access = lwhost::MakeNodalAccess();

  lwhost::PluginNode& add(const char* server) { return editor.addPluginNode(vorn, server); }

  // One output read the way a connected input would read it; `fallback` shows through when the
  // node writes nothing.
  double scalar(lwhost::PluginNode& node, const char* output, double fallback = -999.0) {
    double value = fallback;
    EXPECT_TRUE(editor.evaluate(node, output, access, &value, NOT_SCALAR)) << output;
    return value;
  }
  int integer(lwhost::PluginNode& node, const char* output, int fallback = -999) {
    int value = fallback;
    EXPECT_TRUE(editor.evaluate(node, output, access, &value, NOT_INTEGER)) << output;
    return value;
  }

  // Output names and types in creation order, as "Name:type".
  static std::vector<std::string> outputsOf(const lwhost::Node& node) {
    std::vector<std::string> out;
    for (const auto& o : node.outputs()) out.push_back(o->name() + ":" + std::to_string(o->type()));
    return out;
  }
};
