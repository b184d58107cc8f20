// Form and view panels ("LWXPanel"): a form driven through the C table as a plug-in would, and
// a view panel built by a plug-in module, with the host acting as the user.
#include <gtest/gtest.h>
#include <lwpanel.h>

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "lwhost/Animation.h"
#include "lwhost/FormRenderer.h"
#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/XPanels.h"
#include "xpanel/PanelProbe.h"

namespace {

using lwhost::FormatValue;
using lwhost::RGB;
using lwhost::XPanel;
using Events = std::vector<std::string>;

Events g_notes;

LWXPRefreshCode Noted(LWXPanelID, unsigned int cid, unsigned int vid, int event) {
  g_notes.push_back(std::to_string(cid - 0x8000) + "/" + std::to_string(vid - 0x8000) + "/" + std::to_string(event));
  return LWXPRC_NONE;
}

LWXPanelControl kFormControls[] = {
    {0x8001, "Size", "integer"},     {0x8002, "Gain", "float"},       {0x8003, "Tag", "string"},
    {0x8004, "Offset", "distance3"}, {0x8005, "Amount", "float-env"}, {0x8006, "Flag", "iBoolean"},
    {0, nullptr, nullptr}};
LWXPanelDataDesc kFormData[] = {
    {0x8001, "", "integer"},   {0x8002, "", "float"},   {0x8003, "", "string"}, {0x8004, "", "distance3"},
    {0x8005, "", "float-env"}, {0x8007, "", "INTEGER"}, {0, nullptr, nullptr}};

// A host with form panels, and the table it serves.
class FormPanel : public ::testing::Test {
 protected:
  lwhost::Host host;
  lwhost::XPanels xpanels{host};
  LWXPanelFuncs* f = static_cast<LWXPanelFuncs*>(host.globals().lookup(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
};

TEST_F(FormPanel, StoresWhatIsSetAndNotifiesUserEdits) {
  g_notes.clear();
  LWXPanelID pan = f->create(LWXP_FORM, kFormControls);
  ASSERT_NE(pan, nullptr);
  f->describe(pan, kFormData, nullptr, nullptr);
  // The flag control takes its value from another id, whose type is spelt in capitals.
  LWXPanelHint hints[] = {XpCHGNOTIFY(Noted), XpVALUE(0x8006, 0x8007), XpEND};
  f->hint(pan, 0, hints);
  lwhost::XPanel& form = *xpanels.find(pan);

  EXPECT_EQ(f->formGet(pan, 0x8001), nullptr) << "unset";
  FSETINT(f, pan, 0x8001, 42);
  FSETFLT(f, pan, 0x8002, 0.5);
  f->formSet(pan, 0x8003, const_cast<char*>("hello"));
  double offset[3] = {1, 2, 3};
  f->formSet(pan, 0x8004, offset);
  int parameter = 0;  // any handle; a form keeps "-env" handles as they are
  f->formSet(pan, 0x8005, &parameter);
  FSETINT(f, pan, 0x8007, 1);
  EXPECT_EQ(FGETINT(f, pan, 0x8001), 42);
  EXPECT_EQ(FGETFLT(f, pan, 0x8002), 0.5);
  EXPECT_STREQ(static_cast<const char*>(f->formGet(pan, 0x8003)), "hello");
  EXPECT_EQ(FormatValue("distance3", form.value(0x8004)), "1.0 m 2.0 m 3.0 m");
  EXPECT_EQ(f->formGet(pan, 0x8005), &parameter);

  // The user's edits land in the store and are announced; the plug-in's own sets were not.
  ASSERT_TRUE(form.setInteger(0x8001, 7));
  ASSERT_TRUE(form.setText(0x8003, "typed"));
  ASSERT_TRUE(form.setInteger(0x8006, 0));
  EXPECT_EQ(FGETINT(f, pan, 0x8001), 7);
  EXPECT_EQ(FGETINT(f, pan, 0x8007), 0);
  EXPECT_EQ(g_notes, (Events{"1/1/2", "3/3/2", "6/7/2"}));

  // Unsetting, unknown ids and view-only calls leave the store alone.
  f->formSet(pan, 0x8001, nullptr);
  EXPECT_EQ(f->formGet(pan, 0x8001), nullptr);
  f->formSet(pan, 0x8999, offset);
  EXPECT_EQ(f->formGet(pan, 0x8999), nullptr);
  EXPECT_EQ(f->open(pan), 1);
  EXPECT_EQ(f->post(pan), 1);
  EXPECT_EQ(form.openCount(), 1);
  EXPECT_EQ(form.postCount(), 1);
}

TEST_F(FormPanel, ThumbnailSizesFollowTheOptions) {
  static LWXPanelControl thumbs[] = {{0x8001, "", "dThumbnail"}, {0, nullptr, nullptr}};
  lwhost::XPanel* p = xpanels.create(LWXP_FORM, thumbs);
  // Heights by size flag (the largest wins; THUM_SML without one), widths by aspect (4:3 without).
  const std::tuple<unsigned int, int, int> cases[] = {
      {0, 75, 56}, {THUM_SNGL, 27, 20}, {THUM_MED | THUM_SQ, 84, 84}, {THUM_LRG | THUM_WIDE, 199, 112},
      {THUM_XLG | THUM_PORT, 126, 168}, {THUM_SML | THUM_35MM, 84, 56}, {THUM_SML | THUM_MED | THUM_EURO, 105, 84},
      {THUM_SML | THUM_ANAW, 132, 56}};
  for (const auto& [options, width, height] : cases) {
    LWXPanelHint hints[] = {XpCTRLCFG(0x8001, static_cast<std::uintptr_t>(options)), XpEND};
    p->hint(0, hints);
    const lwhost::ThumbnailSize size = p->thumbnailSize(0x8001, 250);
    EXPECT_EQ(size.width, width) << std::hex << options;
    EXPECT_EQ(size.height, height) << std::hex << options;
  }
}

TEST_F(FormPanel, MisuseIsRefusedAndNoted) {
  EXPECT_EQ(f->create(3, kFormControls), nullptr);
  int notAPanel = 0;
  f->describe(&notAPanel, kFormData, nullptr, nullptr);
  f->setData(&notAPanel, 0, &notAPanel);
  EXPECT_EQ(f->formGet(nullptr, 0x8001), nullptr);
  EXPECT_EQ(f->post(&notAPanel), 0);
  EXPECT_EQ(xpanels.problems().size(), 5u);
  EXPECT_NE(xpanels.problems()[0].find("type 3"), std::string::npos);
  char text[] = "abc";
  EXPECT_EQ(f->drawf->textWidth(nullptr, text), 18) << "metrics need no area";
  EXPECT_EQ(f->drawf->textWidth(nullptr, nullptr), 0);

  // A view panel without callbacks, an id below the range, a class bound to data of another type.
  static LWXPanelControl odd[] = {{0x10, "Low", "integer"}, {0x8002, "Check", "iBoolean"}, {0, nullptr, nullptr}};
  static LWXPanelDataDesc oddData[] = {{0x8002, "", "float"}, {0, nullptr, nullptr}};
  LWXPanelID view = f->create(LWXP_VIEW, odd);
  f->describe(view, oddData, nullptr, nullptr);
  lwhost::XPanel& panel = *xpanels.find(view);
  ASSERT_EQ(panel.problems().size(), 3u);
  EXPECT_NE(panel.problems()[0].find("0x10"), std::string::npos) << panel.problems()[0];
  EXPECT_NE(panel.problems()[1].find("without a get or set"), std::string::npos) << panel.problems()[1];
  EXPECT_NE(panel.problems()[2].find("iBoolean"), std::string::npos) << panel.problems()[2];
  EXPECT_EQ(f->formGet(view, 0x8002), nullptr);
  EXPECT_TRUE(panel.value(0x8002).isNull()) << "no get callback to ask";
  EXPECT_FALSE(panel.setNumber(0x8002, 1.0));

  // A component leaving the host takes its table away (here a second one, which replaced the first).
  auto scoped = std::make_unique<lwhost::XPanels>(host);
  EXPECT_EQ(host.globals().lookup(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT), scoped->table());
  static LWXPanelControl one[] = {{0x8001, "A", "integer"}, {0, nullptr, nullptr}};
  EXPECT_NE(scoped->table()->create(LWXP_FORM, one), nullptr) << "left alive for the component to free";
  scoped.reset();
  EXPECT_EQ(host.globals().lookup(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT), nullptr);
}

// The probe module's view panel in a host with form panels and parameters.
class ViewPanel : public FormPanel {
 protected:
  void SetUp() override {
    PanelProbeRequest request{&Record, this, nullptr, nullptr};
    ASSERT_EQ(module.activate(module.require("XPanelProbe", "view"), 1, &request), AFUNC_OK);
    panel = xpanels.find(request.panel);
    ASSERT_NE(panel, nullptr);
    state = request.state;
    events.clear();
  }

  // `head`, the get calls of a full refresh in data-table order, then `tail`.
  static Events Refreshed(Events head, const Events& tail = {}) {
    for (int vid : {0, 1, 2, 3, 6, 7, 8, 9}) head.push_back("get 0x900" + std::to_string(vid));
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
  }

  static void Record(void* context, const char* event) { static_cast<ViewPanel*>(context)->events.push_back(event); }

  lwhost::Animation animation{host};  // serves "LWVParmFuncs 2"
  lwhost::ModuleFile module{PANEL_PROBE_MODULE_PATH};
  Events events;
  XPanel* panel = nullptr;
  PanelProbeState* state = nullptr;
};

TEST_F(ViewPanel, UserEditsCallSetThenNotifyThenRefreshOnlyWhenAsked) {
  ASSERT_TRUE(panel->setInteger(kProbeCount, 7));
  EXPECT_EQ(events, Refreshed({"set 0x9000 7", "notify 0x9000 0x9000 2"}));
  EXPECT_EQ(panel->shownValue(kProbeCount).integer[0], 7) << "the refresh re-read the value";

  // A set answering 0 (LWXPRC_NONE) gets no refresh. Numbers convert to the data's type; other
  // values reach the plug-in as it stores them; any event code can be raised.
  state->setResult = 0;
  events.clear();
  ASSERT_TRUE(panel->setNumber(kProbeCount, 2.6));
  ASSERT_TRUE(panel->setNumber(kProbeScale, 0.25));
  ASSERT_TRUE(panel->setText(kProbeName, "renamed"));
  ASSERT_TRUE(panel->notify(kProbeScale, XPanel::kTrack));
  EXPECT_EQ(events, (Events{"set 0x9000 3", "notify 0x9000 0x9000 2", "set 0x9006 0.25", "notify 0x9006 0x9006 2",
                            "set 0x9009 renamed", "notify 0x9009 0x9009 2", "notify 0x9006 0x9006 1"}));

  // Values the control cannot take, valueless controls and unknown ids change nothing.
  events.clear();
  const std::size_t problems = panel->problems().size();
  EXPECT_FALSE(panel->setText(kProbeCount, "seven"));
  EXPECT_FALSE(panel->setInteger(kProbeName, 1));
  EXPECT_FALSE(panel->setInteger(kProbeReset, 1));
  EXPECT_FALSE(panel->setInteger(0x9999, 1));
  EXPECT_EQ(events, Events{});
  EXPECT_EQ(panel->problems().size(), problems + 4);

  // A button's callback (which refreshes the view from inside), then the hit.
  ASSERT_TRUE(panel->click(kProbeReset));
  EXPECT_EQ(events, Refreshed({"click 0x9004"}, {"notify 0x9004 0x0 3"}));
}

TEST_F(ViewPanel, PanelDestroyedInsideItsCallbackNotifiesOnceThenRefusesUse) {
  state->destroyOnClick = 1;
  LWXPanelID handle = panel->handle();
  ASSERT_TRUE(panel->click(kProbeReset));
  // Neither the host's handle nor the plug-in's calls into the plug-in again.
  EXPECT_FALSE(panel->click(kProbeReset));
  EXPECT_TRUE(panel->value(kProbeCount).isNull());
  EXPECT_EQ(f->getData(handle, 0), nullptr);
  EXPECT_EQ(f->open(handle), 0);
  f->viewRefresh(handle);
  f->destroy(handle);
  EXPECT_EQ(events, (Events{"click 0x9004", "destroyed with-state"}));
  EXPECT_EQ(xpanels.problems().size(), 4u);
}

TEST_F(ViewPanel, PopupsListTheirEntriesAndChooseByIndex) {
  EXPECT_EQ(panel->popupEntries(kProbeMode), (Events{"Add", "Multiply", "Screen"}));
  // The count and name callbacks find their list through the control's user data.
  EXPECT_EQ(panel->popupEntries(kProbeLight), (Events{"Key", "Fill", "Rim"}));
  state->setResult = 0;  // no refreshes, to keep the log short
  ASSERT_TRUE(panel->choose(kProbeMode, 2));
  EXPECT_FALSE(panel->choose(kProbeMode, 3));
  EXPECT_FALSE(panel->choose(kProbeMode, -1));
  ASSERT_TRUE(panel->choose(kProbeLight, 0));
  EXPECT_EQ(events, (Events{"popcount", "set 0x9001 2", "notify 0x9001 0x9001 2", "popcount", "set 0x9002 0",
                            "notify 0x9002 0x9002 2"}));

  // The rest of what the hints said.
  EXPECT_EQ(panel->title(), "Panel Probe");
  // Dividers in the list form (the single form is on every Vorn panel).
  EXPECT_TRUE(panel->hasDividerAfter(kProbeLight));
  EXPECT_TRUE(panel->hasDividerAfter(kProbeOpacity));
  EXPECT_FALSE(panel->hasDividerAfter(kProbeCount));
}

TEST_F(ViewPanel, ValuesAreReadThroughGetAndParametersThroughTheirService) {
  EXPECT_EQ(panel->problems(), Events{});
  EXPECT_EQ(FormatValue("float", panel->value(kProbeScale)), "1.5");
  EXPECT_EQ(FormatValue("angle", panel->value(kProbeSpin)), "90.0\xB0");
  EXPECT_EQ(panel->value(kProbeName).text, "probe");

  // "-env" data give the parameter; its value is read at time 0 through "LWVParmFuncs 2".
  lwhost::XPValue v = panel->value(kProbeOpacity);
  EXPECT_EQ(v.vparm, state->opacity);
  EXPECT_EQ(FormatValue("percent-env", v), "75.0 %");
  EXPECT_EQ(FormatValue("color-env", panel->value(kProbeTint)), "255 128 0");

  // Editing a parameter changes it in place, then set hears of the same handle.
  events.clear();
  ASSERT_TRUE(panel->setNumber(kProbeOpacity, 0.5));
  const double tint[3] = {0.2, 0.4, 0.6};
  ASSERT_TRUE(panel->setVector(kProbeTint, tint));
  EXPECT_EQ(FormatValue("percent-env", panel->value(kProbeOpacity)), "50.0 %");
  EXPECT_EQ(panel->value(kProbeTint).number[2], 0.6);
  EXPECT_EQ(events, Refreshed({"get 0x9003", "set 0x9003 same-parameter", "notify 0x9003 0x9003 2"},
                              Refreshed({"get 0x9008", "set 0x9008 same-parameter", "notify 0x9008 0x9008 2"},
                                        {"get 0x9003", "get 0x9008"})));

  // Without the service the handle is still given, its value is unknown and it cannot be edited.
  host.globals().withhold(LWVPARMFUNCS_GLOBAL);
  v = panel->value(kProbeOpacity);
  EXPECT_EQ(v.vparm, state->opacity);
  EXPECT_EQ(FormatValue("percent-env", v), "(envelope)");
  events.clear();
  EXPECT_FALSE(panel->setNumber(kProbeOpacity, 1.0));
  EXPECT_EQ(events, (Events{"get 0x9003"})) << "no set without an edit";
  EXPECT_NE(panel->problems().back().find(LWVPARMFUNCS_GLOBAL), std::string::npos) << panel->problems().back();
}

TEST_F(ViewPanel, DrawCallbackPixelsLandInTheRaster) {
  // THUM_FULL | THUM_SML, hinted on the thumbnail with id 0: the full width, 56 high.
  const lwhost::Raster r = panel->drawThumbnail(kProbePreview, 300);
  ASSERT_EQ(r.width(), 300);
  ASSERT_EQ(r.height(), 56);
  EXPECT_EQ(events, (Events{"draw 0x9005 300x56", "text 12x11"}));

  const RGB white{255, 255, 255}, black{0, 0, 0}, navy{10, 20, 30}, text = lwhost::PaletteColour(LWP_INVERT);
  const std::tuple<int, int, RGB> pixels[] = {{0, 0, {255, 0, 0}}, {10, 10, black}, {11, 10, white}, {2, 2, navy},
                                              {4, 4, navy}, {5, 4, white}, {4, 5, white}, {299, 0, text},
                                              {0, 55, black}, {299, 55, black}};
  for (const auto& [x, y, colour] : pixels) EXPECT_EQ(r.get(x, y), colour) << x << "," << y;
  int inked = 0;
  for (int y = 4; y < 15; ++y)
    for (int x = 300 - 16; x < 300 - 4; ++x) inked += r.get(x, y) == text;
  EXPECT_GT(inked, 10) << "\"Hi\" at the top right";

  // Clicks in the thumbnail reach its zoom callback; controls without one refuse them.
  events.clear();
  ASSERT_TRUE(panel->zoom(kProbePreview, 12, 30, 2));
  EXPECT_FALSE(panel->zoom(kProbeCount, 1, 1, 1));
  EXPECT_EQ(events, (Events{"zoom 0x9005 12,30 2 region 12,30,12,30"}));

  // Drawing with an area after its callback returned is refused, not a crash.
  const std::size_t problems = xpanels.problems().size();
  ASSERT_NE(state->lastArea, nullptr);
  f->drawf->drawPixel(state->lastArea, LWP_BLACK, 0, 0);
  f->drawf->drawText(state->lastArea, const_cast<char*>("late"), LWP_BLACK, 0, 0);
  ASSERT_EQ(xpanels.problems().size(), problems + 2);
  EXPECT_NE(xpanels.problems().back().find("not a drawing area"), std::string::npos);
}

TEST_F(ViewPanel, RenderedFormShowsEveryControl) {
  state->hideScale = 1;
  std::vector<lwhost::FormRow> rows;
  const lwhost::Raster form = lwhost::RenderForm(*panel, &rows);
  ASSERT_EQ(rows.size(), panel->controls().size());
  const RGB bg = lwhost::PaletteColour(LWP_BG);
  auto inkIn = [&](const lwhost::FormRow& row, int x0, int x1) {
    int n = 0;
    for (int y = row.top; y < row.top + row.height; ++y)
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
    // Thumbnails and buttons have no label column; the hidden value shows nothing.
    const bool labelled = c.cid != kProbePreview && c.cid != kProbeReset;
    EXPECT_EQ(inkIn(row, lwhost::kFormMargin, row.valueX) > 0, labelled) << c.label;
    EXPECT_EQ(inkIn(row, row.valueX, form.width() - 2) > 0, c.cid != kProbeScale) << c.label;
  }
  // The thumbnail is the plug-in's drawing, at full width under the title.
  const lwhost::FormRow& thumb = rows[0];
  EXPECT_GT(thumb.top, lwhost::kFormMargin) << "the title comes first";
  EXPECT_EQ(thumb.valueX, lwhost::kFormMargin);
  EXPECT_EQ(form.get(thumb.valueX, thumb.valueY), (RGB{255, 0, 0}));
  EXPECT_EQ(form.get(thumb.valueX + 3, thumb.valueY + 3), (RGB{10, 20, 30}));
}

}  // namespace
