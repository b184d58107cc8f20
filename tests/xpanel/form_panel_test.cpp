// Form panels driven through the C table as a plug-in would, thumbnail sizes, and misuse.
#include <gtest/gtest.h>
#include <lwpanel.h>

#include <cstdint>
#include <string>
#include <vector>

#include "lwhost/FormRenderer.h"
#include "lwhost/Host.h"
#include "lwhost/XPanels.h"

namespace {

using lwhost::ValueKind;

std::vector<std::string> g_notes;

LWXPRefreshCode Noted(LWXPanelID, unsigned int cid, unsigned int vid, int event) {
  g_notes.push_back(std::to_string(cid - 0x8000) + "/" + std::to_string(vid - 0x8000) + "/" + std::to_string(event));
  return LWXPRC_NONE;
}

LWXPanelControl kFormControls[] = {
    {0x8001, "Size", "integer"},     {0x8002, "Gain", "float"},       {0x8003, "Tag", "string"},
    {0x8004, "Offset", "distance3"}, {0x8005, "Amount", "float-env"}, {0x8006, "Flag", "iBoolean"},
    {0, nullptr, nullptr},
};
LWXPanelDataDesc kFormData[] = {
    {0x8001, "", "integer"},   {0x8002, "", "float"},   {0x8003, "", "string"}, {0x8004, "", "distance3"},
    {0x8005, "", "float-env"}, {0x8007, "", "INTEGER"}, {0, nullptr, nullptr},
};

class FormPanel : public ::testing::Test {
 protected:
  void SetUp() override { g_notes.clear(); }
  lwhost::Host host;
  lwhost::XPanels xpanels{host};
  LWXPanelFuncs* f = static_cast<LWXPanelFuncs*>(host.globals().lookup(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
};

TEST_F(FormPanel, StoresWhatIsSetAndNotifiesUserEdits) {
  ASSERT_EQ(f, xpanels.table());
  ASSERT_NE(f->drawf, nullptr);
  LWXPanelID pan = f->create(LWXP_FORM, kFormControls);
  ASSERT_NE(pan, nullptr);
  f->describe(pan, kFormData, nullptr, nullptr);
  // The flag control takes its value from another id.
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
  EXPECT_EQ(static_cast<double*>(f->formGet(pan, 0x8004))[2], 3.0);
  EXPECT_EQ(f->formGet(pan, 0x8005), &parameter);
  EXPECT_TRUE(g_notes.empty()) << "the plug-in's own sets are not user edits";

  // The user's edits land in the store and are announced.
  ASSERT_TRUE(form.setInteger(0x8001, 7));
  ASSERT_TRUE(form.setText(0x8003, "typed"));
  ASSERT_TRUE(form.setInteger(0x8006, 0));
  EXPECT_EQ(FGETINT(f, pan, 0x8001), 7);
  EXPECT_STREQ(static_cast<const char*>(f->formGet(pan, 0x8003)), "typed");
  EXPECT_EQ(FGETINT(f, pan, 0x8007), 0);
  EXPECT_EQ(g_notes, (std::vector<std::string>{"1/1/2", "3/3/2", "6/7/2"}));
  EXPECT_EQ(form.refreshCount(), 0) << "forms have no set callback to ask for one";

  const lwhost::XPValue offsetValue = form.value(0x8004);
  EXPECT_EQ(offsetValue.kind, ValueKind::Float3);
  EXPECT_EQ(offsetValue.number[1], 2.0);
  EXPECT_EQ(lwhost::FormatValue("distance3", offsetValue), "1.0 m 2.0 m 3.0 m");
  EXPECT_EQ(form.control(0x8006)->dataType, "INTEGER");

  // Unsetting, unknown ids and view-only calls leave the store alone.
  f->formSet(pan, 0x8001, nullptr);
  EXPECT_EQ(f->formGet(pan, 0x8001), nullptr);
  f->formSet(pan, 0x8999, offset);
  EXPECT_EQ(f->formGet(pan, 0x8999), nullptr);
  const lwhost::Raster picture = lwhost::RenderForm(form);
  EXPECT_EQ(picture.width(), lwhost::kFormWidth);
  EXPECT_EQ(f->open(pan), 1);
  EXPECT_EQ(f->post(pan), 1);
  EXPECT_EQ(form.openCount(), 1);
  EXPECT_EQ(form.postCount(), 1);
  f->destroy(pan);
  EXPECT_TRUE(xpanels.panels().empty());
}

TEST_F(FormPanel, ThumbnailSizesFollowTheOptions) {
  static LWXPanelControl thumbs[] = {{0x8001, "", "dThumbnail"}, {0, nullptr, nullptr}};
  struct Case {
    unsigned int options;
    int width, height;
  };
  const Case cases[] = {
      {0, 75, 56},  // THUM_SML, landscape 4:3 by default
      {THUM_SNGL, 27, 20},
      {THUM_MED | THUM_SQ, 84, 84},
      {THUM_LRG | THUM_WIDE, 199, 112},
      {THUM_XLG | THUM_PORT, 126, 168},
      {THUM_SML | THUM_35MM, 84, 56},
      {THUM_SML | THUM_MED | THUM_EURO, 105, 84},  // the larger height wins
      {THUM_SML | THUM_ANAW, 132, 56},
      {static_cast<unsigned int>(THUM_FULL) | THUM_BORDER_NONE | THUM_SML, 250, 56},
  };
  for (const Case& c : cases) {
    lwhost::XPanel* p = xpanels.create(LWXP_FORM, thumbs);
    ASSERT_NE(p, nullptr);
    LWXPanelHint hints[] = {XpCTRLCFG(0x8001, static_cast<std::uintptr_t>(c.options)), XpEND};
    p->hint(0, hints);
    const lwhost::ThumbnailSize size = p->thumbnailSize(0x8001, 250);
    EXPECT_EQ(size.width, c.width) << std::hex << c.options;
    EXPECT_EQ(size.height, c.height) << std::hex << c.options;
    xpanels.destroy(*p);
  }
}

TEST_F(FormPanel, MisuseIsRefusedAndNoted) {
  EXPECT_EQ(f->create(3, kFormControls), nullptr);
  EXPECT_EQ(f->create(0, nullptr), nullptr);
  int notAPanel = 0;
  f->describe(&notAPanel, kFormData, nullptr, nullptr);
  f->setData(&notAPanel, 0, &notAPanel);
  EXPECT_EQ(f->getData(&notAPanel, 0), nullptr);
  EXPECT_EQ(f->formGet(nullptr, 0x8001), nullptr);
  EXPECT_EQ(f->post(&notAPanel), 0);
  f->drawf->drawPixel(&notAPanel, LWP_BLACK, 0, 0);
  EXPECT_EQ(xpanels.problems().size(), 8u);
  EXPECT_NE(xpanels.problems()[0].find("type 3"), std::string::npos);
  char text[] = "abc";
  EXPECT_EQ(f->drawf->textWidth(nullptr, text), 18) << "metrics need no area";
  EXPECT_EQ(f->drawf->textWidth(nullptr, nullptr), 0);

  // A view panel without callbacks, a control table without ids in range, a mismatched class.
  static LWXPanelControl odd[] = {{0x10, "Low", "integer"}, {0x8002, "Check", "iBoolean"}, {0, nullptr, nullptr}};
  static LWXPanelDataDesc oddData[] = {{0x8002, "", "float"}, {0, nullptr, nullptr}};
  LWXPanelID view = f->create(LWXP_VIEW, odd);
  f->describe(view, oddData, nullptr, nullptr);
  const std::vector<std::string>& problems = xpanels.find(view)->problems();
  ASSERT_EQ(problems.size(), 3u);
  EXPECT_NE(problems[0].find("0x10"), std::string::npos) << problems[0];
  EXPECT_NE(problems[1].find("without a get or set"), std::string::npos) << problems[1];
  EXPECT_NE(problems[2].find("iBoolean"), std::string::npos) << problems[2];
  EXPECT_EQ(f->formGet(view, 0x8002), nullptr);
  EXPECT_TRUE(xpanels.find(view)->value(0x8002).isNull()) << "no get callback to ask";
  EXPECT_FALSE(xpanels.find(view)->setNumber(0x8002, 1.0));
}

TEST_F(FormPanel, LeavingHostTakesTheTableAway) {
  auto* scoped = new lwhost::XPanels(host);
  EXPECT_EQ(host.globals().lookup(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT), scoped->table());
  LWXPanelFuncs* table = scoped->table();
  static LWXPanelControl one[] = {{0x8001, "A", "integer"}, {0, nullptr, nullptr}};
  (void)table->create(LWXP_FORM, one);
  delete scoped;
  EXPECT_EQ(host.globals().lookup(LWXPANELFUNCS_GLOBAL, GFUSE_TRANSIENT), nullptr);
}

}  // namespace
