// The records plug-ins read: scene, time and interface info.
#include <limits>
#include <tuple>

#include "SceneTestSupport.h"

namespace {

using ::testing::ElementsAre;

TEST_F(SceneTest, RenderCameraSwitchesAtTimesThroughTheSceneInfoFunction) {
  auto* info = global<LWSceneInfo>("LW Scene Info 3");
  EXPECT_EQ(info->renderCamera(0.0), LWITEM_NULL);  // no camera yet
  LWItemID main = scene.addCamera("Main");
  LWItemID close = scene.addCamera("Close");
  LWItemID wide = scene.addCamera("Wide");
  EXPECT_EQ(info->renderCamera(5.0), main);

  const double fps = info->framesPerSecond;
  scene.switchCamera(12 / fps, close);
  scene.switchCamera(24 / fps, wide);
  EXPECT_EQ(info->renderCamera(11 / fps), main);
  EXPECT_EQ(info->renderCamera(12 / fps), close);  // the switch frame itself
  double stepped = 0.0;  // a plug-in stepping frame by frame lands a hair early
  for (int frame = 0; frame < 12; ++frame) stepped += 1.0 / fps;
  ASSERT_LT(stepped, 12 / fps);
  EXPECT_EQ(info->renderCamera(stepped), close);
  EXPECT_EQ(info->renderCamera(23.5 / fps), close);
  EXPECT_EQ(info->renderCamera(24 / fps), wide);

  // A removed camera's switches go with it; ids handed out follow renumbering.
  scene.remove(close);
  EXPECT_EQ(info->renderCamera(18 / fps), main);
  scene.renumber({{wide, Id(0x30000009)}});
  EXPECT_EQ(info->renderCamera(30 / fps), Id(0x30000009));
  EXPECT_THROW(scene.switchCamera(1.0, scene.addLight("Key")), std::invalid_argument);
  scene.clearCameraSwitches();
  EXPECT_EQ(info->renderCamera(30 / fps), main);
}

TEST_F(SceneTest, TimeAndFrameStayConsistentWithTheFrameRate) {
  auto* time = global<LWTimeInfo>(LWTIMEINFO_GLOBAL);
  auto* scn = global<LWSceneInfo>("LW Scene Info 6");
  auto* ui = global<LWInterfaceInfo>("LW Interface Info 7");
  scene.setFrame(12);
  EXPECT_EQ(time->frame, 12);
  EXPECT_DOUBLE_EQ(time->time, 0.4);  // LightWave's default 30 fps
  EXPECT_DOUBLE_EQ(ui->curTime, 0.4);

  // A new rate keeps the frame and moves the time.
  scene.setFramesPerSecond(24.0);
  EXPECT_EQ(scn->framesPerSecond, 24.0);
  EXPECT_EQ(time->frame, 12);
  EXPECT_DOUBLE_EQ(time->time, 0.5);

  // Sub-frame times (motion blur passes) belong to the nearest frame.
  const std::pair<double, int> nearest[] = {{1.0 - 0.3 / 24, 24}, {1.0 + 0.3 / 24, 24}, {-0.5, -12}};
  for (const auto& [t, frame] : nearest) {
    scene.setTime(t);
    EXPECT_EQ(time->frame, frame) << t;
  }
  // A rate changed through the record moves the time too.
  scene.editSceneInfo([](LWSceneInfo& s) { s.framesPerSecond = 25.0; });
  EXPECT_DOUBLE_EQ(time->time, -12 / 25.0);

  EXPECT_THROW(scene.setFramesPerSecond(0.0), std::invalid_argument);
  EXPECT_THROW(scene.setTime(std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
  EXPECT_THROW(scene.editSceneInfo([](LWSceneInfo& s) { s.framesPerSecond = -1.0; }), std::invalid_argument);
  EXPECT_EQ(scn->framesPerSecond, 25.0);
  EXPECT_EQ(time->frame, -12);
}

TEST_F(SceneTest, SceneInfoIsKeptCurrent) {
  auto* info = global<LWSceneInfo>("LW Scene Info 3");
  EXPECT_EQ(std::make_tuple(info->frameStart, info->frameEnd, info->recursionDepth), std::make_tuple(1, 60, 16));
  for (const char* text : {info->name, info->filename, info->RGBPrefix, info->radiosityFileName})
    EXPECT_NE(text, nullptr);

  // Totals follow the objects.
  LWItemID body = scene.addObject("Body", LWITEM_NULL, {100, 90});
  scene.addObject("Head", LWITEM_NULL, {20, 12});
  EXPECT_EQ(info->numPoints, 120);
  EXPECT_EQ(info->numPolygons, 102);
  scene.remove(body);
  EXPECT_EQ(info->numPoints, 20);
  EXPECT_EQ(info->numPolygons, 12);

  scene.setName("Shot 12");
  scene.setThreadCount(3);
  EXPECT_STREQ(info->name, "Shot 12");
  EXPECT_EQ(info->numThreads, 3);
  EXPECT_THROW(scene.setThreadCount(0), std::invalid_argument);

  // Plain settings can be edited; what the scene owns is put back.
  static const char* const kStray = "not the scene's";
  scene.editSceneInfo([](LWSceneInfo& s) {
    s.frameEnd = 240;
    s.name = kStray;
    s.renderCamera = nullptr;
    s.numPoints = -5;
  });
  EXPECT_EQ(info->frameEnd, 240);
  EXPECT_STREQ(info->name, "Shot 12");
  EXPECT_NE(info->renderCamera, nullptr);
  EXPECT_EQ(info->numPoints, 20);
}

TEST_F(SceneTest, InterfaceInfoReportsSelectionAndItemColours) {
  auto* ui = global<LWInterfaceInfo>("LW Interface Info 5");
  LWItemID robot = scene.addObject("Robot");
  LWItemID key = scene.addLight("Key");
  LWItemID cam = scene.addCamera("Cam");
  LWItemID hip = scene.addBone("Hip", robot);
  auto rgba = [&](LWItemID item, unsigned int state) {
    float c[4] = {-1, -1, -1, -1};
    ui->itemColorRgba(item, state, c);
    return std::vector<float>(c, c + 4);
  };

  EXPECT_EQ(ui->selItems[0], LWITEM_NULL);
  scene.select({key, robot, key});
  EXPECT_THAT(std::vector<LWItemID>(ui->selItems, ui->selItems + 3), ElementsAre(key, robot, LWITEM_NULL));
  EXPECT_EQ(ui->itemFlags(robot), static_cast<unsigned>(LWITEMF_SELECTED));
  scene.setItemFlags(cam, LWITEMF_LOCKED | LWITEMF_SELECTED);  // selection is not a flag to set
  EXPECT_EQ(ui->itemFlags(cam), static_cast<unsigned>(LWITEMF_LOCKED));
  scene.remove(key);
  EXPECT_THAT(std::vector<LWItemID>(ui->selItems, ui->selItems + 2), ElementsAre(robot, LWITEM_NULL));
  EXPECT_THROW(scene.select({Id(0x20000005)}), std::invalid_argument);

  // An index, then a 24-bit colour and a custom colour (clamped); anything else is ignored.
  ui->setItemColorIndex(cam, 11);
  ui->setItemColorIndex(cam, 15);
  ui->setItemColorIndex(cam, 0x0200FF00);
  EXPECT_EQ(ui->itemColor(cam), 11);
  ui->setItemColorIndex(cam, 0x01FFFF00);
  EXPECT_THAT(rgba(cam, LWITEMCOL_NORMAL), ElementsAre(1, 1, 0, 1));
  EXPECT_EQ(ui->itemColor(cam), 13);  // the palette's yellow
  double blue[3] = {0.0, 0.0, 2.0};
  ui->setItemColorCustom(cam, blue);
  EXPECT_THAT(rgba(cam, LWITEMCOL_NORMAL), ElementsAre(0, 0, 1, 1));
  // Selected items are drawn lighter; "current" depends on the selection.
  EXPECT_THAT(rgba(cam, LWITEMCOL_SELECTED), ElementsAre(0.5, 0.5, 1, 1));
  EXPECT_EQ(rgba(cam, LWITEMCOL_CURRENT)[0], 0.0f);
  scene.select({cam});
  EXPECT_EQ(rgba(cam, LWITEMCOL_CURRENT)[0], 0.5f);

  // A type colour changes items of that type without their own colour only.
  const int hipColour = ui->itemColor(hip);
  float red[3] = {1.0f, 0.0f, 0.0f}, got[3] = {};
  ui->defaultItemTypeColor(LWI_OBJECT, red, 1);
  ui->defaultItemTypeColor(LWI_OBJECT, got, 0);
  EXPECT_THAT(got, ElementsAre(1.0f, 0.0f, 0.0f));
  EXPECT_EQ(ui->itemColor(robot), 11);  // nearest palette entry to red
  EXPECT_THAT(rgba(robot, LWITEMCOL_NORMAL), ElementsAre(1, 0, 0, 1));
  EXPECT_EQ(ui->itemColor(hip), hipColour);

  // The other per-item queries, for known and unknown items.
  double x = 9, y = 9;
  scene.setSchemaPosition(robot, 2.5, -1.0);
  ui->schemaPos(robot, &x, &y);
  EXPECT_EQ(std::make_pair(x, y), std::make_pair(2.5, -1.0));
  ui->schemaPos(Id(0x10000042), &x, &y);
  EXPECT_EQ(std::make_pair(x, y), std::make_pair(0.0, 0.0));
  EXPECT_EQ(ui->itemVis(robot), LWOVIS_SHADED);
  EXPECT_EQ(ui->itemVis(cam), LWIVIS_VISIBLE);
  EXPECT_FALSE(scene.setVisibility(cam, LWOVIS_TEXTURED));  // only objects have draw modes
  EXPECT_EQ(ui->itemIconScale(cam), 1.0f);
  EXPECT_EQ(ui->itemIconScale(LWITEM_NULL), 0.0f);
  EXPECT_THAT(rgba(LWITEM_NULL, LWITEMCOL_NORMAL), ElementsAre(0, 0, 0, 0));

  // Editing plain settings leaves the selection and the functions alone.
  scene.editInterfaceInfo([](LWInterfaceInfo& i) {
    i.previewEnd = 90;
    i.selItems = nullptr;
    i.itemColor = nullptr;
  });
  EXPECT_EQ(ui->previewEnd, 90);
  EXPECT_EQ(ui->selItems[0], cam);
  EXPECT_NE(ui->itemColor, nullptr);
}

}  // namespace
