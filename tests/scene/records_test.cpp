// The records plug-ins read: scene, time and interface info.
#include <algorithm>
#include <limits>
#include <thread>

#include "SceneTestSupport.h"

namespace {

using ::testing::ElementsAre;
using ::testing::FloatEq;

TEST_F(SceneTest, RenderCameraSwitchesAtTimesThroughTheSceneInfoFunction) {
  auto* info = global<LWSceneInfo>("LW Scene Info 3");
  ASSERT_EQ(info, global<LWSceneInfo>(LWSCENEINFO_GLOBAL));
  ASSERT_NE(info->renderCamera, nullptr);
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
  EXPECT_EQ(info->renderCamera(1e6), wide);
  EXPECT_EQ(info->renderCamera(-1.0), main);

  // A removed camera's switches go with it; ids handed out follow renumbering.
  scene.remove(close);
  EXPECT_EQ(info->renderCamera(18 / fps), main);
  scene.renumber({{wide, Id(0x30000009)}});
  EXPECT_EQ(info->renderCamera(30 / fps), Id(0x30000009));

  LWItemID light = scene.addLight("Key");
  EXPECT_THROW(scene.switchCamera(1.0, light), std::invalid_argument);
  scene.clearCameraSwitches();
  EXPECT_EQ(info->renderCamera(30 / fps), main);
}

TEST_F(SceneTest, TimeAndFrameStayConsistentWithTheFrameRate) {
  auto* time = global<LWTimeInfo>(LWTIMEINFO_GLOBAL);
  auto* scn = global<LWSceneInfo>("LW Scene Info 6");
  auto* ui = global<LWInterfaceInfo>("LW Interface Info 7");
  EXPECT_EQ(scn->framesPerSecond, 30.0);  // LightWave's default

  scene.setFrame(12);
  EXPECT_EQ(time->frame, 12);
  EXPECT_DOUBLE_EQ(time->time, 0.4);
  EXPECT_DOUBLE_EQ(ui->curTime, 0.4);

  // A new rate keeps the frame and moves the time.
  scene.setFramesPerSecond(24.0);
  EXPECT_EQ(scn->framesPerSecond, 24.0);
  EXPECT_EQ(time->frame, 12);
  EXPECT_DOUBLE_EQ(time->time, 0.5);

  // Sub-frame times (motion blur passes) belong to the nearest frame.
  scene.setTime(1.0 - 0.3 / 24);
  EXPECT_EQ(time->frame, 24);
  scene.setTime(1.0 + 0.3 / 24);
  EXPECT_EQ(time->frame, 24);
  scene.setTime(-0.5);
  EXPECT_EQ(time->frame, -12);

  // A rate changed through the record moves the time too.
  scene.setFrame(30);
  scene.editSceneInfo([](LWSceneInfo& s) { s.framesPerSecond = 25.0; });
  EXPECT_DOUBLE_EQ(time->time, 1.2);

  EXPECT_THROW(scene.setFramesPerSecond(0.0), std::invalid_argument);
  EXPECT_THROW(scene.setTime(std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
  EXPECT_THROW(scene.editSceneInfo([](LWSceneInfo& s) { s.framesPerSecond = -1.0; }), std::invalid_argument);
  EXPECT_EQ(scn->framesPerSecond, 25.0);
  EXPECT_EQ(time->frame, 30);
}

TEST_F(SceneTest, SceneInfoIsKeptCurrent) {
  auto* info = global<LWSceneInfo>("LW Scene Info 3");
  EXPECT_EQ(info->recursionDepth, 16);
  EXPECT_EQ(info->numThreads, static_cast<int>(std::max(1u, std::thread::hardware_concurrency())));
  EXPECT_EQ(info->frameStart, 1);
  EXPECT_EQ(info->frameEnd, 60);
  ASSERT_NE(info->name, nullptr);
  ASSERT_NE(info->filename, nullptr);
  ASSERT_NE(info->RGBPrefix, nullptr);
  ASSERT_NE(info->radiosityFileName, nullptr);

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
    s.recursionDepth = 4;
    s.name = kStray;
    s.renderCamera = nullptr;
    s.numPoints = -5;
  });
  EXPECT_EQ(info->frameEnd, 240);
  EXPECT_EQ(info->recursionDepth, 4);
  EXPECT_STREQ(info->name, "Shot 12");
  EXPECT_NE(info->renderCamera, nullptr);
  EXPECT_EQ(info->numPoints, 20);
}

TEST_F(SceneTest, InterfaceInfoReportsSelectionAndItemColours) {
  auto* ui = global<LWInterfaceInfo>("LW Interface Info 5");
  ASSERT_EQ(ui, global<LWInterfaceInfo>(LWINTERFACEINFO_GLOBAL));
  LWItemID robot = scene.addObject("Robot");
  LWItemID key = scene.addLight("Key");
  LWItemID cam = scene.addCamera("Cam");
  LWItemID hip = scene.addBone("Hip", robot);

  ASSERT_NE(ui->selItems, nullptr);
  EXPECT_EQ(ui->selItems[0], LWITEM_NULL);
  scene.select({key, robot, key});
  EXPECT_EQ(ui->selItems[0], key);
  EXPECT_EQ(ui->selItems[1], robot);
  EXPECT_EQ(ui->selItems[2], LWITEM_NULL);
  EXPECT_EQ(ui->itemFlags(robot), static_cast<unsigned>(LWITEMF_SELECTED));
  EXPECT_EQ(ui->itemFlags(cam), 0u);
  scene.setItemFlags(cam, LWITEMF_LOCKED | LWITEMF_SELECTED);  // selection is not a flag to set
  EXPECT_EQ(ui->itemFlags(cam), static_cast<unsigned>(LWITEMF_LOCKED));
  scene.remove(key);
  EXPECT_EQ(ui->selItems[0], robot);
  EXPECT_EQ(ui->selItems[1], LWITEM_NULL);
  EXPECT_THROW(scene.select({Id(0x20000005)}), std::invalid_argument);

  // Type defaults, then an index, a 24-bit colour and a custom colour.
  EXPECT_EQ(ui->itemColor(robot), lwhost::Scene::DefaultColorIndex(LWI_OBJECT));
  EXPECT_EQ(ui->itemColor(cam), lwhost::Scene::DefaultColorIndex(LWI_CAMERA));
  EXPECT_EQ(ui->itemColor(hip), lwhost::Scene::DefaultColorIndex(LWI_BONE));
  ui->setItemColorIndex(cam, 11);
  EXPECT_EQ(ui->itemColor(cam), 11);
  ui->setItemColorIndex(cam, 15);  // neither an index nor 0x01RRGGBB: ignored
  ui->setItemColorIndex(cam, 0x02FF0000);
  EXPECT_EQ(ui->itemColor(cam), 11);
  ui->setItemColorIndex(cam, 0x01FFFF00);  // yellow
  float rgba[4];
  ui->itemColorRgba(cam, LWITEMCOL_NORMAL, rgba);
  EXPECT_THAT(rgba, ElementsAre(FloatEq(1), FloatEq(1), FloatEq(0), FloatEq(1)));
  EXPECT_EQ(ui->itemColor(cam), 13);  // the palette's yellow
  double blue[3] = {0.0, 0.0, 2.0};    // out of range is clamped
  ui->setItemColorCustom(cam, blue);
  ui->itemColorRgba(cam, LWITEMCOL_NORMAL, rgba);
  EXPECT_THAT(rgba, ElementsAre(FloatEq(0), FloatEq(0), FloatEq(1), FloatEq(1)));

  // Selected items are drawn lighter; "current" depends on the selection.
  ui->itemColorRgba(cam, LWITEMCOL_SELECTED, rgba);
  EXPECT_THAT(rgba, ElementsAre(FloatEq(0.5f), FloatEq(0.5f), FloatEq(1), FloatEq(1)));
  ui->itemColorRgba(cam, LWITEMCOL_CURRENT, rgba);
  EXPECT_FLOAT_EQ(rgba[0], 0.0f);
  scene.select({cam});
  ui->itemColorRgba(cam, LWITEMCOL_CURRENT, rgba);
  EXPECT_FLOAT_EQ(rgba[0], 0.5f);

  // A type colour changes items without their own colour only.
  float red[3] = {1.0f, 0.0f, 0.0f}, got[3] = {};
  ui->defaultItemTypeColor(LWI_OBJECT, red, 1);
  ui->defaultItemTypeColor(LWI_OBJECT, got, 0);
  EXPECT_THAT(got, ElementsAre(1.0f, 0.0f, 0.0f));
  EXPECT_EQ(ui->itemColor(robot), 11);  // nearest palette entry to red
  ui->itemColorRgba(robot, LWITEMCOL_NORMAL, rgba);
  EXPECT_THAT(rgba, ElementsAre(1.0f, 0.0f, 0.0f, 1.0f));
  EXPECT_EQ(ui->itemColor(hip), lwhost::Scene::DefaultColorIndex(LWI_BONE));
  ui->itemColorRgba(cam, LWITEMCOL_NORMAL, rgba);
  EXPECT_FLOAT_EQ(rgba[2], 1.0f);

  // The other per-item queries, for a known and an unknown item.
  double x = 9, y = 9;
  scene.setSchemaPosition(robot, 2.5, -1.0);
  ui->schemaPos(robot, &x, &y);
  EXPECT_EQ(x, 2.5);
  EXPECT_EQ(y, -1.0);
  ui->schemaPos(Id(0x10000042), &x, &y);
  EXPECT_EQ(x + y, 0.0);
  EXPECT_EQ(ui->itemVis(robot), LWOVIS_SHADED);
  EXPECT_EQ(ui->itemVis(cam), LWIVIS_VISIBLE);
  EXPECT_FALSE(scene.setVisibility(cam, LWOVIS_TEXTURED));  // only objects have draw modes
  EXPECT_EQ(ui->itemIconScale(cam), 1.0f);
  EXPECT_EQ(ui->itemIconScale(LWITEM_NULL), 0.0f);
  ui->itemColorRgba(LWITEM_NULL, LWITEMCOL_NORMAL, rgba);
  EXPECT_THAT(rgba, ElementsAre(0.0f, 0.0f, 0.0f, 0.0f));

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
