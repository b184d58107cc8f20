// The Extended Spot Info node through vorn.p: the identifiers of the spot being shaded, read
// from the nodal access record of each sample.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "utility/UtilityNodeTest.h"

namespace {

using ::testing::ElementsAre;

class SpotInfoTest : public UtilityNodeTest {
 protected:
  lwhost::PluginNode& addSpotInfo() { return add("vornExSpotInfo"); }
  static int Id(LWItemID item) { return LWITEMID2INT(item); }
};

TEST_F(SpotInfoTest, ReportsTheObjectRaySourceAndPolygonOfEachSample) {
  lwhost::Scene& scene = session.scene();
  scene.addObject("Floor");
  const LWItemID ball = scene.addObject("Ball");
  const LWItemID key = scene.addLight("Key");
  const LWItemID camera = scene.addCamera("Camera");
  ASSERT_EQ(Id(ball), 0x10000001);
  ASSERT_EQ(Id(key), 0x20000000);

  lwhost::PluginNode& node = addSpotInfo();
  EXPECT_EQ(node.version(), 2);
  EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_TRUE(node.inputs().empty());
  EXPECT_THAT(outputsOf(node), ElementsAre("Object ID:4", "Ray Source ID:4", "Polygon Number:4"));

  // Three distinct values, so that a field read in place of another shows.
  access.objID = ball;
  access.sourceID = key;
  access.polNum = 4242;
  EXPECT_EQ(integer(node, "Object ID"), 0x10000001);
  EXPECT_EQ(integer(node, "Ray Source ID"), 0x20000000);
  EXPECT_EQ(integer(node, "Polygon Number"), 4242);
  // As 32-bit integers, unchanged: a scalar input sees the same number.
  EXPECT_EQ(scalar(node, "Object ID"), 268435457.0);

  // Every sample is read afresh; polygon 0 and a null item are values like any other.
  access.objID = scene.find("Floor");
  access.sourceID = camera;
  access.polNum = 0;
  EXPECT_EQ(integer(node, "Object ID"), 0x10000000);
  EXPECT_EQ(integer(node, "Ray Source ID"), 0x30000000);
  EXPECT_EQ(integer(node, "Polygon Number"), 0);
  access.sourceID = LWITEM_NULL;
  EXPECT_EQ(integer(node, "Ray Source ID"), 0);
}

TEST_F(SpotInfoTest, AnOutputOfAnotherNodeWritesNothing) {
  OutputSpy::Install(session.host());
  lwhost::PluginNode& node = addSpotInfo();
  lwhost::PluginNode& twin = addSpotInfo();
  lwhost::PluginNode& timeInfo = add("vornTimeInfo");
  access.polNum = 9;

  EXPECT_EQ(integer(node, "Polygon Number"), 9);
  EXPECT_EQ(OutputSpy::writes, 1);

  char unused = 0;
  std::vector<lwhost::NodeOutput*> foreign;
  for (const auto& o : twin.outputs()) foreign.push_back(o.get());
  for (const auto& o : timeInfo.outputs()) foreign.push_back(o.get());
  OutputSpy::writes = 0;
  for (lwhost::NodeOutput* output : foreign) node.evaluate(access, *output, &unused);
  EXPECT_EQ(OutputSpy::writes, 0);
  EXPECT_EQ(unused, 0);
  EXPECT_TRUE(session.host().messages().errors().empty());

  // Copying leaves the copy answering for its own outputs.
  EXPECT_EQ(twin.instance().copyFrom(node.instance()), "");
  EXPECT_EQ(integer(twin, "Polygon Number"), 9);
}

}  // namespace
