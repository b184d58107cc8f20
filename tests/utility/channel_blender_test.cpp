// The Channel Blender through vorn.p: a vector split into components, any of which a scalar
// connection replaces, every input read for every output.
#include <array>

#include "support/VornNodeTest.h"

using ChannelBlenderTest = VornNodeTest;

TEST_F(ChannelBlenderTest, ScalarInputsReplaceTheVectorsComponentsForEveryOutput) {
  lwhost::PluginNode& node = add("vornChannelBlender");
  EXPECT_EQ(Connectors(node), "Vector/3 X/2 Y/2 Z/2 > Vector/3 X/2 Y/2 Z/2");
  EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_EQ(node.activateInterface().local.panel, nullptr);
  EXPECT_EQ(node.instance().save(lwhost::IOMode::Binary), "");

  // "Vector", "X", "Y", "Z", each asked on its own; -9 shows one the node did not write.
  auto outputs = [&] {
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
