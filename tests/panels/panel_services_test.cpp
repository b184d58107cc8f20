// LWPanelFuncs called directly, as a plug-in would, including the calls a careless one makes.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "ClassicProbeFixture.h"

namespace {

using lwhost::Host;
using lwhost::PanelError;

LWPanelFuncs* Services() {
  return static_cast<LWPanelFuncs*>(Host::lookupFunction()(LWPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
}

char* Text(const char* text) { return const_cast<char*>(text); }

LWControl* AddButton(LWPanelFuncs* pf, LWPanelID pan, const char* label) {
  ControlDesc desc{};
  desc.type = LWT_INTEGER;
  return pf->addControl(pan, Text("ButtonControl"), &desc, Text(label));
}

TEST(PanelServices, HandlesAreCheckedNotTrusted) {
  Host host;
  LWPanelID (*create)(char*, void*) = nullptr;
  {
    lwhost::Panels panels(host);
    LWPanelFuncs* pf = Services();
    create = pf->create;
    ASSERT_EQ(pf, panels.table());
    EXPECT_EQ(pf->globalFun, Host::lookupFunction());

    LWPanelID pan = pf->create(Text("Lifecycle"), nullptr);
    int version = 0;
    pf->get(pan, PAN_VERSION, &version);
    EXPECT_EQ(version, LWPANELS_API_VERSION);
    void* pointer = nullptr;
    pf->get(pan, PAN_PANFUN, &pointer);
    EXPECT_EQ(pointer, pf);  // create was given no table: the host's own
    pf->get(pan, PAN_TITLE, &pointer);
    EXPECT_STREQ(static_cast<const char*>(pointer), "Lifecycle");

    LWControl* a = AddButton(pf, pan, "A");
    LWControl* b = AddButton(pf, pan, "B");
    EXPECT_EQ(pf->nextControl(pan, nullptr), a);
    EXPECT_EQ(pf->nextControl(pan, a), b);
    EXPECT_EQ(pf->nextControl(pan, b), nullptr);

    // Not while it is open.
    EXPECT_EQ(pf->open(pan, 0), 1);
    EXPECT_EQ(pf->open(pan, 0), 0);
    pf->destroy(pan);
    EXPECT_EQ(panels.panels().size(), 1u);
    EXPECT_TRUE(Mentions(panels.problems(), "is open; close it first"));
    // Nobody is at a headless host: the user's session ends and the panel closes.
    EXPECT_EQ(pf->handle(pan, 0), -1);
    EXPECT_FALSE(panels.panel(pan).open);
    auto controlGet = a->get;
    pf->destroy(pan);
    EXPECT_TRUE(panels.panels().empty());
    EXPECT_THROW(panels.panel(pan), PanelError);

    // Stale and made-up handles: nothing is read or written through them.
    panels.clearProblems();
    int sentinel = 12345;
    pf->get(pan, PAN_W, &sentinel);
    EXPECT_EQ(sentinel, 12345);
    LWValue value = {LWT_INTEGER};
    value.intv.value = 99;
    controlGet(a, CTL_X, &value);  // `a` is freed: only its address may be used
    EXPECT_EQ(value.intv.value, 99);
    int local = 0;
    EXPECT_EQ(pf->open(&local, PANF_BLOCKING), 0);
    EXPECT_EQ(AddButton(pf, &local, "C"), nullptr);
    EXPECT_EQ(pf->handle(&local, 0), -1);
    controlGet(&local, CTL_VALUE, &value);
    EXPECT_EQ(value.intv.value, 99);
    EXPECT_EQ(panels.problems().size(), 6u) << Joined(panels.problems());
    EXPECT_TRUE(Mentions(panels.problems(), "is not a live panel"));
    EXPECT_TRUE(Mentions(panels.problems(), "is not a live control"));
  }
  // With the component gone the service is gone, and stray calls answer failure.
  EXPECT_EQ(Services(), nullptr);
  EXPECT_EQ(create(Text("Late"), nullptr), nullptr);
}

TEST(PanelServices, UnknownClassesAreKeptAsPlainBoxes) {
  Host host;
  lwhost::Panels panels(host);
  LWPanelFuncs* pf = Services();
  LWPanelID pan = pf->create(Text("Odd controls"), nullptr);
  ControlDesc desc{};
  desc.type = LWT_STRING;
  LWControl* edit = pf->addControl(pan, Text("EditControl"), &desc, Text("Name"));
  ASSERT_NE(edit, nullptr);
  lwhost::ControlInfo info = panels.control(edit);
  EXPECT_FALSE(info.simulated);
  EXPECT_GT(info.rect.w, 0);
  EXPECT_TRUE(Mentions(panels.problems(), "\"EditControl\" is not simulated"));

  // Whatever is stored comes back by the value's type.
  LWValue number = {LWT_INTEGER};
  number.intv.value = 42;
  edit->set(edit, CTL_VALUE, &number);
  char text[] = "Bob";
  LWValue str = {LWT_STRING};
  str.str.buf = text;
  str.str.bufLen = sizeof text;
  edit->set(edit, CTL_VALUE, &str);
  LWValue vec = {LWT_VFLOAT};
  vec.fvec.val[0] = 1.5, vec.fvec.val[1] = -2, vec.fvec.val[2] = 0.25;
  edit->set(edit, CTL_VALUE, &vec);
  LWValue back = {LWT_INTEGER};
  edit->get(edit, CTL_VALUE, &back);
  EXPECT_EQ(back.intv.value, 42);
  char out[8] = "";
  LWValue strBack = {LWT_STRING};
  strBack.str.buf = out;
  strBack.str.bufLen = sizeof out;
  edit->get(edit, CTL_VALUE, &strBack);
  EXPECT_STREQ(out, "Bob");
  LWValue vecBack = {LWT_VFLOAT};
  edit->get(edit, CTL_VALUE, &vecBack);
  EXPECT_EQ(vecBack.fvec.val[1], -2.0);
  EXPECT_EQ(vecBack.fvec.val[2], 0.25);

  // No class name, no description record, a list box opened without its user data.
  EXPECT_EQ(pf->addControl(pan, nullptr, &desc, Text("x")), nullptr);
  LWControl* list = pf->addControl(pan, Text("ListBoxControl"), nullptr, Text("Empty"));
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(panels.listRows(list).empty());
  EXPECT_TRUE(Mentions(panels.problems(), "came without a description record"));
  pf->open(pan, 0);
  EXPECT_TRUE(Mentions(panels.problems(), "\"Empty\" (ListBoxControl) on panel \"Odd controls\" has no CTL_USERDATA"));
  EXPECT_THROW(panels.selectRow(list, 0), PanelError);
  pf->close(pan);
  pf->destroy(pan);
}

struct DrawSeen {
  LWPanelFuncs* pf = nullptr;
  void* data = nullptr;
  int calls = 0;
} g_drawSeen;

void PanelDraw(LWPanelID pan, void* data, DrMode) {
  g_drawSeen.data = data;
  ++g_drawSeen.calls;
  g_drawSeen.pf->drawFuncs->drawRGBBox(pan, 255, 0, 0, 0, 0, 10, 10);
}

int g_presses = 0;
void Pressed(LWControlID, void*) { ++g_presses; }

TEST(PanelServices, PluginDrawingAndDrawModesShowInTheRenderedPanel) {
  Host host;
  lwhost::Panels panels(host);
  LWPanelFuncs* pf = Services();
  g_drawSeen = DrawSeen{pf};
  LWPanelID pan = pf->create(Text("Drawing"), pf);
  int data = 0;
  pf->set(pan, PAN_USERDATA, &data);
  pf->set(pan, PAN_USERDRAW, reinterpret_cast<void*>(&PanelDraw));
  LWControl* button = AddButton(pf, pan, "Go");
  LWValue ival = {LWT_INTEGER};
  ival.ptr.ptr = reinterpret_cast<void*>(&Pressed);
  button->set(button, CTL_USEREVENT, &ival);
  pf->open(pan, 0);

  const lwhost::RGB red{255, 0, 0};
  lwhost::Raster shown = panels.renderPanel(pan);
  int reds = 0;
  for (int y = 0; y < shown.height(); ++y)
    for (int x = 0; x < shown.width(); ++x) reds += shown.get(x, y) == red;
  EXPECT_EQ(reds, 100);
  EXPECT_EQ(g_drawSeen.data, &data);

  // Ghosted controls still take clicks; erased ones are gone from sight and from the mouse.
  button->draw(button, DR_GHOST);
  panels.press(button);
  EXPECT_EQ(g_presses, 1);
  lwhost::Raster ghosted = panels.renderPanel(pan);
  button->draw(button, DR_ERASE);
  LWValue flags = {LWT_INTEGER};
  button->get(button, CTL_FLAGS, &flags);
  EXPECT_EQ(flags.intv.value & (CTLF_INVISIBLE | CTLF_DISABLE), CTLF_INVISIBLE | CTLF_DISABLE);
  EXPECT_THROW(panels.press(button), PanelError);
  EXPECT_EQ(g_presses, 1);

  // Exactly the button's rectangle changed: erased, not drawn elsewhere.
  lwhost::Raster erased = panels.renderPanel(pan);
  ASSERT_EQ(erased.width(), ghosted.width());
  ASSERT_EQ(erased.height(), ghosted.height());
  int x0 = 1 << 30, y0 = 1 << 30, x1 = -1, y1 = -1;
  for (int y = 0; y < erased.height(); ++y)
    for (int x = 0; x < erased.width(); ++x)
      if (erased.get(x, y) != ghosted.get(x, y))
        x0 = std::min(x0, x), y0 = std::min(y0, y), x1 = std::max(x1, x), y1 = std::max(y1, y);
  lwhost::PanelRect rect = panels.control(button).rect;
  EXPECT_EQ(x1 - x0 + 1, rect.w);
  EXPECT_EQ(y1 - y0 + 1, rect.h);
  button->draw(button, DR_RENDER);
  panels.press(button);
  EXPECT_EQ(g_presses, 2);
  EXPECT_EQ(panels.control(button).drawRequests, 3);
  pf->close(pan);
  pf->destroy(pan);
}

}  // namespace
