// The Channel Blender through vorn.p: a vector split into components, any of which a scalar
// connection replaces, every input read for every output.
#include <gtest/gtest.h>
#include <lwnodes.h>

#include <array>
#include <string>

#include "lwhost/NodalAccess.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "support/ModulePaths.h"

TEST(ChannelBlenderTest, ScalarInputsReplaceTheVectorsComponentsForEveryOutput) {
  lwhost::Session session;
  lwhost::NodeEditor& editor = session.nodes();
  lwhost::PluginNode& node = editor.addPluginNode(session.load(testpaths::kVorn), "vornChannelBlender");
  std::string connectors;
  for (const auto& c : node.outputs()) connectors += "out " + c->name() + "/" + std::to_string(c->type()) + " ";
  for (const auto& c : node.inputs()) connectors += "in " + c->name() + "/" + std::to_string(c->type()) + " ";
  EXPECT_EQ(connectors, "out Vector/3 out X/2 out Y/2 out Z/2 in Vector/3 in X/2 in Y/2 in Z/2 ");
  EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_EQ(node.activateInterface().local.panel, nullptr);
  EXPECT_EQ(node.instance().save(lwhost::IOMode::Binary), "");

  // "Vector", "X", "Y", "Z", each asked on its own; -9 shows one the node did not write.
  auto outputs = [&, access = lwhost::MakeNodalAccess()]() mutable {
    std::array<double, 6> out{-9, -9, -9, -9, -9, -9};
    EXPECT_TRUE(editor.evaluate(node, "Vector", access, out.data(), NOT_VECTOR));
    for (int i = 0; i < 3; ++i)
      EXPECT_TRUE(editor.evaluate(node, std::string(1, "XYZ"[i]).c_str(), access, &out[3 + i], NOT_SCALAR));
    return out;
  };
  EXPECT_EQ(outputs(), (std::array<double, 6>{0, 0, 0, 0, 0, 0}));
  editor.connect(editor.addScalar(-4.5), "Scalar", node, "Z");
  EXPECT_EQ(outputs(), (std::array<double, 6>{0, 0, -4.5, 0, 0, -4.5}));
  editor.disconnect(node, "Z");
  lwhost::Node& v = editor.addVector(1.5, 2.5, 3.5);
  editor.connect(v, "Vector", node, "Vector");
  EXPECT_EQ(outputs(), (std::array<double, 6>{1.5, 2.5, 3.5, 1.5, 2.5, 3.5}));
  lwhost::Node& y = editor.addScalar(7.0);
  editor.connect(y, "Scalar", node, "Y");
  v.resetEvaluations();
  EXPECT_EQ(outputs(), (std::array<double, 6>{1.5, 7.0, 3.5, 1.5, 7.0, 3.5}));
  EXPECT_EQ(v.evaluations() + y.evaluations(), 8u) << "every input read for every output";
}
