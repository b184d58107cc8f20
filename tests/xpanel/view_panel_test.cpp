// A view panel built by a plug-in module, driven by the host acting as the user.
#include <gtest/gtest.h>
#include <lwpanel.h>

#include <cmath>
#include <string>
#include <vector>

#include "lwhost/FormRenderer.h"
#include "xpanel/ProbeFixture.h"

namespace {

using lwhost::RGB;
using lwhost::ValueKind;
using lwhost::XPanel;
using Events = std::vector<std::string>;

Events Then(Events head, const Events& tail) {
  head.insert(head.end(), tail.begin(), tail.end());
  return head;
}

using ViewPanel = ProbeFixture;

TEST_F(ViewPanel, SetCallsSetThenNotifiesThenRefreshesOnlyWhenAsked) {
  const int refreshes = panel->refreshCount();
  ASSERT_TRUE(panel->setInteger(kProbeCount, 7));
  EXPECT_EQ(events, Then({"set 0x9000 7", "notify 0x9000 0x9000 2"}, RefreshGets()));
  EXPECT_EQ(panel->refreshCount(), refreshes + 1);
  EXPECT_EQ(panel->lastSetResult(), 1);
  EXPECT_EQ(state->count, 7);
  EXPECT_EQ(panel->shownValue(kProbeCount).integer[0], 7) << "the refresh re-read the value";

  // A set that answers 0 (LWXPRC_NONE) gets no refresh.
  state->setResult = 0;
  events.clear();
  ASSERT_TRUE(panel->setInteger(kProbeCount, 9));
  EXPECT_EQ(events, (Events{"set 0x9000 9", "notify 0x9000 0x9000 2"}));
  EXPECT_EQ(panel->refreshCount(), refreshes + 1);
  EXPECT_EQ(panel->shownValue(kProbeCount).integer[0], 7);

  // Numbers convert to the data's type; other values reach the plug-in as it stores them.
  events.clear();
  ASSERT_TRUE(panel->setNumber(kProbeCount, 2.6));
  ASSERT_TRUE(panel->setNumber(kProbeScale, 0.25));
  ASSERT_TRUE(panel->setText(kProbeName, "renamed"));
  EXPECT_EQ(events, (Events{"set 0x9000 3", "notify 0x9000 0x9000 2", "set 0x9007", "notify 0x9007 0x9007 2",
                            "set 0x900A", "notify 0x900A 0x900A 2"}));
  EXPECT_EQ(state->scale, 0.25);
  EXPECT_STREQ(state->name, "renamed");

  // Any event code can be raised, e.g. tracking while a slider moves.
  events.clear();
  ASSERT_TRUE(panel->notify(kProbeScale, XPanel::kTrack));
  EXPECT_EQ(events, (Events{"notify 0x9007 0x9007 1"}));

  // Values the control cannot take, valueless controls and unknown ids change nothing.
  events.clear();
  const std::size_t problems = panel->problems().size();
  EXPECT_FALSE(panel->setText(kProbeCount, "seven"));
  EXPECT_FALSE(panel->setInteger(kProbeName, 1));
  EXPECT_FALSE(panel->setInteger(kProbeReset, 1));
  EXPECT_FALSE(panel->setInteger(0x9999, 1));
  EXPECT_TRUE(events.empty()) << Joined(events);
  EXPECT_EQ(panel->problems().size(), problems + 4);
}

TEST_F(ViewPanel, ButtonClickCallsBackThenRaisesHit) {
  state->count = 5;
  const int refreshes = panel->refreshCount();
  ASSERT_TRUE(panel->click(kProbeReset));
  // The button resets the count and refreshes the view from inside its callback.
  EXPECT_EQ(events, Then(Then({"click 0x9005"}, RefreshGets()), {"notify 0x9005 0x0 3"}));
  EXPECT_EQ(panel->refreshCount(), refreshes + 1);
  EXPECT_EQ(panel->shownValue(kProbeCount).integer[0], 0);

  // A button that destroys its own panel: the destroy notification comes, nothing after it.
  state->destroyOnClick = 1;
  events.clear();
  LWXPanelID handle = panel->handle();
  ASSERT_TRUE(panel->click(kProbeReset));
  EXPECT_EQ(events, (Events{"click 0x9005", "destroyed with-state"}));
  EXPECT_TRUE(xpanels.panels().empty());
  EXPECT_EQ(xpanels.table()->getData(handle, 0), nullptr);
  ASSERT_FALSE(xpanels.problems().empty());
  EXPECT_NE(xpanels.problems().back().find("getData"), std::string::npos) << xpanels.problems().back();
  // The host's own handle on it refuses further use instead of calling the plug-in.
  events.clear();
  EXPECT_FALSE(panel->click(kProbeReset));
  EXPECT_TRUE(panel->value(kProbeCount).isNull());
  EXPECT_TRUE(events.empty()) << Joined(events);
}

TEST_F(ViewPanel, PopupsListTheirEntriesAndChooseByIndex) {
  EXPECT_EQ(panel->popupEntries(kProbeMode), (Events{"Add", "Multiply", "Screen"}));
  // The count and name callbacks find their list through the control's user data.
  EXPECT_EQ(panel->popupEntries(kProbeLight), (Events{"Key", "Fill", "Rim"}));
  EXPECT_EQ(events, (Events{"popcount"}));

  events.clear();
  state->setResult = 0;  // no refreshes, to keep the log short
  ASSERT_TRUE(panel->choose(kProbeMode, 2));
  EXPECT_FALSE(panel->choose(kProbeMode, 3));
  EXPECT_FALSE(panel->choose(kProbeMode, -1));
  ASSERT_TRUE(panel->choose(kProbeLight, 0));
  EXPECT_EQ(events,
            (Events{"set 0x9002 2", "notify 0x9002 0x9002 2", "popcount", "set 0x9003 0", "notify 0x9003 0x9003 2"}));
  EXPECT_EQ(state->mode, 2);
  EXPECT_EQ(state->light, 0);

  // The rest of what the hints said.
  EXPECT_EQ(panel->title(), "Panel Probe");
  EXPECT_TRUE(panel->hasDividerAfter(kProbeReset));
  EXPECT_TRUE(panel->hasDividerAfter(kProbeLight));
  EXPECT_TRUE(panel->hasDividerAfter(kProbeOpacity));
  EXPECT_FALSE(panel->hasDividerAfter(kProbeCount));
  EXPECT_TRUE(panel->hasChangeNotify());
}

TEST_F(ViewPanel, ValuesAreReadThroughGetAndParametersThroughTheirService) {
  EXPECT_TRUE(panel->problems().empty()) << Joined(panel->problems());

  lwhost::XPValue v = panel->value(kProbeEnabled);
  EXPECT_EQ(v.kind, ValueKind::Integer) << "\"Integer\" is the integer type";
  EXPECT_EQ(v.integer[0], 1);
  v = panel->value(kProbeScale);
  EXPECT_EQ(v.kind, ValueKind::Float);
  EXPECT_EQ(v.number[0], 1.5);
  EXPECT_EQ(panel->value(kProbeName).text, "probe");
  state->hideScale = 1;
  EXPECT_TRUE(panel->value(kProbeScale).isNull());
  EXPECT_TRUE(panel->value(kProbeReset).isNull()) << "a button has no value";

  // "-env" data give the parameter; its value is read at time 0 through "LWVParmFuncs 2".
  v = panel->value(kProbeOpacity);
  ASSERT_EQ(v.kind, ValueKind::VParm);
  EXPECT_EQ(v.vparm, state->opacity);
  EXPECT_TRUE(v.numbersKnown);
  EXPECT_EQ(v.number[0], 0.75);
  v = panel->value(kProbeTint);
  EXPECT_EQ(v.kind, ValueKind::VParm);
  EXPECT_EQ(v.number[1], 0.5);

  // Editing a parameter changes it in place, then set hears of the same handle.
  events.clear();
  ASSERT_TRUE(panel->setNumber(kProbeOpacity, 0.5));
  const double tint[3] = {0.2, 0.4, 0.6};
  ASSERT_TRUE(panel->setVector(kProbeTint, tint));
  EXPECT_EQ(FakeParameters::setVals, 2);
  EXPECT_EQ(panel->value(kProbeOpacity).number[0], 0.5);
  EXPECT_EQ(panel->value(kProbeTint).number[2], 0.6);
  Events expected = {"get 0x9004", "set 0x9004 same-parameter", "notify 0x9004 0x9004 2"};
  expected = Then(expected, RefreshGets());
  expected = Then(expected, {"get 0x9009", "set 0x9009 same-parameter", "notify 0x9009 0x9009 2"});
  expected = Then(expected, RefreshGets());
  expected = Then(expected, {"get 0x9004", "get 0x9009"});
  EXPECT_EQ(events, expected);

  // Without the service the handle is still given, its value is unknown and it cannot be edited.
  host.globals().withhold(LWVPARMFUNCS_GLOBAL);
  v = panel->value(kProbeOpacity);
  EXPECT_EQ(v.vparm, state->opacity);
  EXPECT_FALSE(v.numbersKnown);
  events.clear();
  EXPECT_FALSE(panel->setNumber(kProbeOpacity, 1.0));
  EXPECT_EQ(events, (Events{"get 0x9004"})) << "no set without an edit";
  EXPECT_NE(panel->problems().back().find(LWVPARMFUNCS_GLOBAL), std::string::npos) << panel->problems().back();
}

TEST_F(ViewPanel, DrawCallbackPixelsLandInTheRaster) {
  // The probe's thumbnail is configured as the module's logo: THUM_FULL | THUM_BORDER_NONE | THUM_SML.
  EXPECT_EQ(panel->thumbnailOptions(kProbePreview), 0x80000601u);
  const lwhost::ThumbnailSize size = panel->thumbnailSize(kProbePreview, 300);
  EXPECT_EQ(size.width, 300);
  EXPECT_EQ(size.height, 56);

  const lwhost::Raster r = panel->drawThumbnail(kProbePreview, 300);
  ASSERT_EQ(r.width(), 300);
  ASSERT_EQ(r.height(), 56);
  EXPECT_EQ(events, (Events{"draw 0x9006 300x56", "text 12x11"}));

  const RGB white{255, 255, 255}, black{0, 0, 0}, text = lwhost::PaletteColour(LWP_INVERT);
  EXPECT_EQ(r.get(0, 0), (RGB{255, 0, 0}));
  EXPECT_EQ(r.get(10, 10), black) << "the diagonal line";
  EXPECT_EQ(r.get(11, 10), white);
  EXPECT_EQ(r.get(3, 3), (RGB{10, 20, 30})) << "RGB_ colour code";
  EXPECT_EQ(r.get(4, 2), (RGB{10, 20, 30}));
  EXPECT_EQ(r.get(5, 3), white) << "box is 3 wide";
  EXPECT_EQ(r.get(6, 2), white);
  EXPECT_EQ(r.get(299, 0), text);
  for (int x = 0; x < 300; x += 37) EXPECT_EQ(r.get(x, 55), black) << "bottom line at " << x;
  int inked = 0;
  for (int y = 4; y < 4 + 11; ++y)
    for (int x = 300 - 12 - 4; x < 300 - 4; ++x) inked += r.get(x, y) == text;
  EXPECT_GT(inked, 10) << "\"Hi\" drawn at the top right";
  for (int y = 4; y < 15; ++y) EXPECT_EQ(r.get(300 - 17, y), white) << "text starts where measured";

  // Clicks in the thumbnail reach its zoom callback; controls without one refuse them.
  events.clear();
  ASSERT_TRUE(panel->zoom(kProbePreview, 12, 30, 2));
  EXPECT_FALSE(panel->zoom(kProbeCount, 1, 1, 1));
  EXPECT_EQ(events, (Events{"zoom 0x9006 12,30 2 region 12,30,12,30"}));

  // Drawing with an area after its callback returned is refused, not a crash.
  const std::size_t problems = xpanels.problems().size();
  EXPECT_EQ(run("draw-stale").result, 1);
  ASSERT_EQ(xpanels.problems().size(), problems + 2);
  EXPECT_NE(xpanels.problems().back().find("not a drawing area"), std::string::npos);
}

TEST_F(ViewPanel, DestroyNotifiesWithThePanelsUserData) {
  LWXPanelID handle = panel->handle();
  xpanels.destroy(*panel);
  EXPECT_EQ(events, (Events{"destroyed with-state"}));
  EXPECT_TRUE(xpanels.panels().empty());
  // The plug-in's handle is dead now: every entry refuses it.
  LWXPanelFuncs* f = xpanels.table();
  EXPECT_EQ(f->getData(handle, 0), nullptr);
  EXPECT_EQ(f->open(handle), 0);
  f->viewRefresh(handle);
  f->hint(handle, 0, nullptr);
  f->destroy(handle);
  EXPECT_EQ(events, (Events{"destroyed with-state"})) << "nothing called twice";
  EXPECT_EQ(xpanels.problems().size(), 5u);
}

TEST_F(ViewPanel, RenderedFormShowsEveryControl) {
  state->hideScale = 1;
  std::vector<lwhost::FormRow> rows;
  const lwhost::Raster form = lwhost::RenderForm(*panel, &rows);
  const std::string path = std::string(XPANEL_TEST_OUTPUT_DIR) + "/probe_form.png";
  std::string error;
  EXPECT_TRUE(form.writePng(path, &error)) << error;

  ASSERT_EQ(rows.size(), panel->controls().size());
  const RGB bg = lwhost::PaletteColour(LWP_BG);
  auto inkIn = [&](int x0, int y0, int x1, int y1) {
    int n = 0;
    for (int y = y0; y < y1; ++y)
      for (int x = x0; x < x1; ++x) n += form.get(x, y) != bg;
    return n;
  };
  int previousBottom = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const lwhost::FormRow& row = rows[i];
    const lwhost::XPControl& c = panel->controls()[i];
    EXPECT_EQ(row.cid, c.cid);
    EXPECT_GE(row.top, previousBottom) << "rows in table order, not overlapping";
    previousBottom = row.top + row.height;
    const bool hasLabelColumn = c.cid != kProbePreview && c.cid != kProbeReset;
    if (hasLabelColumn) {
      EXPECT_GT(inkIn(lwhost::kFormMargin, row.top, row.valueX, row.top + row.height), 0) << c.label << " label";
    }
    if (c.cid == kProbeScale)
      EXPECT_EQ(inkIn(row.valueX, row.top, form.width() - 2, row.top + row.height), 0) << "hidden value";
    else
      EXPECT_GT(inkIn(row.valueX, row.top, form.width() - 2, row.top + row.height), 0) << c.label << " value";
  }
  // The thumbnail is the plug-in's drawing, at full width under the title.
  const lwhost::FormRow& thumb = rows[0];
  EXPECT_EQ(thumb.valueX, lwhost::kFormMargin);
  EXPECT_EQ(form.get(thumb.valueX, thumb.valueY), (RGB{255, 0, 0}));
  EXPECT_EQ(form.get(thumb.valueX + 3, thumb.valueY + 3), (RGB{10, 20, 30}));
  EXPECT_GT(thumb.top, lwhost::kFormMargin) << "the title comes first";

  // Values are formatted as LightWave shows them.
  using lwhost::FormatValue;
  EXPECT_EQ(FormatValue("percent-env", panel->value(kProbeOpacity)), "75.0 %");
  EXPECT_EQ(FormatValue("color-env", panel->value(kProbeTint)), "255 128 0");
  EXPECT_EQ(FormatValue("angle", panel->value(kProbeSpin)), "90.0\xB0");
  EXPECT_EQ(FormatValue("integer", panel->value(kProbeCount)), "3");
  EXPECT_EQ(FormatValue("float", panel->value(kProbeScale)), "") << "hidden";
  state->hideScale = 0;
  EXPECT_EQ(FormatValue("float", panel->value(kProbeScale)), "1.5");
  state->scale = 2;
  EXPECT_EQ(FormatValue("float", panel->value(kProbeScale)), "2.0");
  EXPECT_EQ(FormatValue("distance", panel->value(kProbeScale)), "2.0 m");
  host.globals().withhold(LWVPARMFUNCS_GLOBAL);
  EXPECT_EQ(FormatValue("percent-env", panel->value(kProbeOpacity)), "(envelope)");
}

}  // namespace
