// The Time Info node through vorn.p: what it reports before and after NewTime in Layout and in
// the modeller, how it holds the scene information service, copying, and its form.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "lwhost/FormRenderer.h"
#include "utility/UtilityNodeTest.h"

namespace {

using ::testing::ElementsAre;

constexpr const char* kSceneInfo = "LW Scene Info 3";

class TimeInfoTest : public UtilityNodeTest {
 protected:
  lwhost::PluginNode& addTimeInfo() { return add("vornTimeInfo"); }

  struct Reading {
    double time;
    int frame;
    double fps;
  };
  Reading read(lwhost::PluginNode& node) {
    return {scalar(node, "Time"), integer(node, "Frame"), scalar(node, "Frames per Second")};
  }
  void expectReading(lwhost::PluginNode& node, double time, int frame, double fps) {
    const Reading r = read(node);
    EXPECT_EQ(r.time, time);
    EXPECT_EQ(r.frame, frame);
    EXPECT_EQ(r.fps, fps);
  }
};

TEST_F(TimeInfoTest, ANewNodeReportsZeroTimeFrameZeroAnd24Fps) {
  session.scene().setFramesPerSecond(30.0);  // not read until NewTime
  lwhost::PluginNode& node = addTimeInfo();
  EXPECT_EQ(node.version(), 2);
  EXPECT_EQ(node.flags(), 0u);
  EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_TRUE(node.inputs().empty());
  EXPECT_THAT(outputsOf(node), ElementsAre("Time:2", "Frame:4", "Frames per Second:2"));
  expectReading(node, 0.0, 0, 24.0);
}

TEST_F(TimeInfoTest, LayoutReadsTheScenesRateOnEveryNewTimeAndLetsGoAtOnce) {
  lwhost::PluginNode& node = addTimeInfo();
  session.scene().setFramesPerSecond(25.0);
  session.host().globals().resetCounts();

  EXPECT_EQ(node.newTime(12, 0.48), "");
  expectReading(node, 0.48, 12, 25.0);
  lwhost::LookupCounts counts = session.host().globals().counts(kSceneInfo);
  EXPECT_EQ(counts.acquire, 1);
  EXPECT_EQ(counts.release, 1);

  // A later pass sees a changed rate, and negative frames and times pass as they are.
  session.scene().setFramesPerSecond(29.97);
  EXPECT_EQ(node.newTime(-3, -0.1), "");
  expectReading(node, -0.1, -3, 29.97);
  counts = session.host().globals().counts(kSceneInfo);
  EXPECT_EQ(counts.acquire, 2);
  EXPECT_EQ(counts.release, 2);
  EXPECT_EQ(counts.transient, 0);

  // Evaluation itself looks nothing up.
  session.host().globals().resetCounts();
  read(node);
  EXPECT_TRUE(session.host().globals().namesAsked().empty());
}

TEST_F(TimeInfoTest, TheModellerKeepsTheLastRateWhateverTheScenesRate) {
  session.host().actAs(lwhost::Application::Modeler);
  lwhost::PluginNode& modelled = addTimeInfo();
  session.scene().setFramesPerSecond(50.0);
  session.host().globals().resetCounts();
  EXPECT_EQ(modelled.newTime(7, 0.35), "");
  expectReading(modelled, 0.35, 7, 24.0);
  EXPECT_EQ(session.host().globals().counts(kSceneInfo).acquire, 0);
  EXPECT_EQ(session.host().globals().counts(kSceneInfo).release, 0);

  // A node that learnt a rate in Layout keeps it once the host is the modeller.
  session.host().actAs(lwhost::Application::Layout);
  lwhost::PluginNode& node = addTimeInfo();
  EXPECT_EQ(node.newTime(1, 0.04), "");
  expectReading(node, 0.04, 1, 50.0);
  session.host().actAs(lwhost::Application::Modeler);
  node.activateInterface();  // any activation tells the module which program it runs in
  session.scene().setFramesPerSecond(60.0);
  session.host().globals().resetCounts();
  EXPECT_EQ(node.newTime(2, 0.08), "");
  expectReading(node, 0.08, 2, 50.0);
  EXPECT_EQ(session.host().globals().counts(kSceneInfo).acquire, 0);
}

TEST_F(TimeInfoTest, AnOutputOfAnotherNodeWritesNothing) {
  OutputSpy::Install(session.host());
  lwhost::PluginNode& node = addTimeInfo();
  lwhost::PluginNode& twin = addTimeInfo();
  lwhost::Node& colour = editor.addColor(0.1, 0.2, 0.3);
  session.scene().setFramesPerSecond(25.0);
  node.newTime(5, 0.2);

  // The spy sees the node's own writes...
  EXPECT_EQ(integer(node, "Frame"), 5);
  EXPECT_EQ(OutputSpy::writes, 1);

  // ...and none for outputs that are not the node's, even ones named like its own.
  char unused = 0;
  std::vector<lwhost::NodeOutput*> foreign;
  for (const auto& o : twin.outputs()) foreign.push_back(o.get());
  foreign.push_back(colour.outputs().front().get());
  OutputSpy::writes = 0;
  for (lwhost::NodeOutput* output : foreign) node.evaluate(access, *output, &unused);
  EXPECT_EQ(OutputSpy::writes, 0);
  EXPECT_EQ(unused, 0);
  EXPECT_TRUE(session.host().messages().errors().empty());
}

TEST_F(TimeInfoTest, CopyTakesTheLastTimeFrameAndRateButKeepsItsOwnOutputs) {
  lwhost::PluginNode& source = addTimeInfo();
  session.scene().setFramesPerSecond(48.0);
  source.newTime(96, 2.0);

  lwhost::PluginNode& copy = addTimeInfo();
  EXPECT_EQ(copy.instance().copyFrom(source.instance()), "");
  expectReading(copy, 2.0, 96, 48.0);

  // Independent from then on: the source moves, the copy stays.
  session.scene().setFramesPerSecond(24.0);
  source.newTime(10, 0.4);
  expectReading(copy, 2.0, 96, 48.0);
  expectReading(source, 0.4, 10, 24.0);

  // Neither node saves anything.
  std::string error = "stale";
  EXPECT_EQ(source.instance().save(lwhost::IOMode::Ascii, &error), "");
  EXPECT_EQ(error, "");
}

// Both information nodes share one form: the logo and the web button, nothing else.
TEST_F(TimeInfoTest, BothInformationNodesShowOnlyTheLogoAndTheWebButton) {
  for (const char* server : {"vornTimeInfo", "vornExSpotInfo"}) {
    SCOPED_TRACE(server);
    lwhost::PluginNode& node = add(server);
    lwhost::InterfaceActivation ui = node.activateInterface();
    ASSERT_EQ(ui.result, AFUNC_OK);
    ASSERT_NE(ui.local.panel, nullptr);
    EXPECT_EQ(node.activateInterface().local.panel, ui.local.panel) << "the panel is made once";
    lwhost::XPanel* panel = session.xpanels().find(ui.local.panel);
    ASSERT_NE(panel, nullptr);

    std::vector<std::string> controls;
    for (const lwhost::XPControl& c : panel->controls())
      controls.push_back(std::to_string(c.cid) + " " + c.controlClass + " " + c.label);
    EXPECT_THAT(controls, ElementsAre(std::to_string(0x9901) + " dThumbnail ",
                                      std::to_string(0x9900) + " vButton http://www.vorn.example/"));

    std::vector<lwhost::FormRow> rows;
    const lwhost::Raster form = lwhost::RenderForm(*panel, &rows);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].cid, 0x9901u);
    EXPECT_EQ(rows[1].cid, 0x9900u);
    EXPECT_TRUE(panel->hasDividerAfter(0x9900));

    // The logo is the plug-in's own drawing: white ground, dark text.
    const lwhost::Raster logo = panel->drawThumbnail(0x9901, lwhost::kFormWidth);
    ASSERT_GT(logo.width(), 0);
    int white = 0, dark = 0;
    for (int y = 0; y < logo.height(); ++y)
      for (int x = 0; x < logo.width(); ++x) {
        const lwhost::RGB p = logo.get(x, y);
        white += p == lwhost::RGB{255, 255, 255};
        dark += p.r < 64 && p.g < 64 && p.b < 64;
      }
    EXPECT_GT(white, logo.width() * logo.height() / 2);
    EXPECT_GT(dark, 20);
    EXPECT_TRUE(panel->problems().empty()) << panel->problems().front();

    std::string error;
    EXPECT_TRUE(form.writePng(std::string(UTILITY_TEST_OUTPUT_DIR) + "/" + server + "_form.png", &error)) << error;
  }
}

}  // namespace
