#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "lwhost/Session.h"
#include "support/ModulePaths.h"

// A session with vorn.p loaded, for tests of its nodes (Session.h brings the node editor, the
// nodal access and the forms).
class VornNodeTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  lwhost::NodeEditor& editor = session.nodes();
  LWNodalAccess access = lwhost::MakeNodalAccess();

  lwhost::PluginNode& add(const char* server) { return editor.addPluginNode(vorn, server); }
  lwhost::XPanel& panel(lwhost::PluginNode& node) {
    if (lwhost::XPanel* p = session.xpanels().find(node.activateInterface().local.panel)) return *p;
    throw std::runtime_error(node.serverName() + " gave no panel");
  }
};

// "Name/type " for each input, then "> " and the same for each output.
inline std::string Connectors(const lwhost::Node& node) {
  std::string text;
  for (const auto& c : node.inputs()) text += c->name() + "/" + std::to_string(c->type()) + " ";
  text += ">";
  for (const auto& c : node.outputs()) text += " " + c->name() + "/" + std::to_string(c->type());
  return text;
}
