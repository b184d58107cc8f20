// Classic panels ("LWPanelServices") as plug-ins build and use them, with the host acting as the
// user: through a probe module written with the SDK's macros, and through the table directly,
// including the calls a careless plug-in makes.
#include <gtest/gtest.h>
#include <lwserver.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "ClassicProbe.h"
#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/Panels.h"

namespace {

using lwhost::Host;
using lwhost::PanelError;
using lwhost::RGB;
using lwhost::UserAction;
using Strings = std::vector<std::string>;

bool Mentions(const Strings& all, const std::string& text) {
  return std::any_of(all.begin(), all.end(), [&](const std::string& p) { return p.find(text) != std::string::npos; });
}

// The probe's panel "Probe Statistics": a list box "Rows" (200 wide, 5 rows, its own user data),
// buttons "Clear" and "Done", and a save button "Save..." moved flush right beside "Clear".
class PanelsTest : public ::testing::Test {
 protected:
  // Builds the panel (not yet open).
  ClassicProbeRequest build(bool throwFromName = false) { return run("build", 0, throwFromName); }
  // Opens it with these PANF_* flags.
  int open(int flags) { return run("open", flags, false).result; }
  std::string events() const { return log.events; }

  lwhost::Host host;
  lwhost::Panels panels{host};
  lwhost::ModuleFile module{CLASSIC_PROBE_PATH};
  ClassicProbeLog log{};

  ClassicProbeRequest run(const char* op, int openFlags, bool throwFromName) {
    ClassicProbeRequest request{op, &log, throwFromName, openFlags};
    EXPECT_EQ(module.activate(module.require("ClassicProbe", "panels"), 1, &request), AFUNC_OK) << request.op;
    return request;
  }
};

TEST_F(PanelsTest, ListBoxAndSaveButtonAnswerThroughTheBinaryInterface) {
  ClassicProbeRequest built = build();
  // Pointers read back through an LWT_INTEGER record, as CON_SETEVENT and friends use: on 64-bit
  // builds intv.value would lose them. (CON_PAN's LWT_STRING read runs in every event hook.)
  auto* save = static_cast<LWControl*>(built.save);
  LWValue data = {LWT_INTEGER}, event = {LWT_INTEGER};
  save->get(save, CTL_USERDATA, &data);
  save->get(save, CTL_USEREVENT, &event);
  EXPECT_EQ(data.ptr.ptr, built.handler);
  EXPECT_EQ(event.ptr.ptr, built.buttonEvent);

  EXPECT_THROW(panels.selectRow(built.list, 0), PanelError) << "not open yet: nobody can click it";
  open(0);  // non-blocking: the panel stays up
  EXPECT_EQ(panels.listRows(built.list), Strings(std::begin(kProbeRows), std::end(kProbeRows)));
  EXPECT_EQ(log.wrongUserData, 0);
  panels.selectRow(built.list, 2);
  EXPECT_THROW(panels.selectRow(built.list, 3), PanelError);
  EXPECT_THROW(panels.selectRow(built.list, -1), PanelError);
  EXPECT_THROW(panels.selectRow(built.clear, 0), PanelError);

  // The callbacks get the user data as it is now, not as it was when the box was made.
  auto* list = static_cast<LWControl*>(built.list);
  LWValue other = {LWT_POINTER};
  other.ptr.ptr = built.handler;
  list->set(list, CTL_USERDATA, &other);
  panels.listRows(built.list);
  EXPECT_GT(log.wrongUserData, 0);
  EXPECT_EQ(panels.problems(), Strings{});

  // The probe reads the row and the save button's name back inside its hooks (GET_INT, GET_STR).
  // Then the name into buffers of exactly bufLen bytes on the heap: one byte too many written is
  // an ASan failure.
  const std::string name = "/tmp/command-statistics.txt";
  panels.chooseFile(built.save, name);
  EXPECT_EQ(events(), "select:2|save:" + name + "|");
  for (std::size_t bufLen : {std::size_t{1}, name.size(), name.size() + 1}) {
    std::unique_ptr<char[]> buffer(new char[bufLen]);
    LWValue value = {LWT_STRING};
    value.str.buf = buffer.get();
    value.str.bufLen = static_cast<int>(bufLen);
    save->get(save, CTL_VALUE, &value);
    EXPECT_EQ(std::string(buffer.get()), name.substr(0, bufLen - 1)) << "bufLen " << bufLen;
  }

  // No room at all, or a value record of the wrong type: nothing written, the fault noted.
  char untouched[4] = {'#', '#', '#', '#'};
  LWValue empty = {LWT_STRING};
  empty.str.buf = untouched;
  empty.str.bufLen = 0;
  save->get(save, CTL_VALUE, &empty);
  LWValue integer = {LWT_INTEGER};
  integer.ptr.ptr = untouched;  // would be read as str.buf by a host that trusts the class alone
  save->get(save, CTL_VALUE, &integer);
  EXPECT_EQ(untouched[0], '#');
  EXPECT_TRUE(Mentions(panels.problems(), "buffer length is below 1"));
  EXPECT_TRUE(Mentions(panels.problems(), "is a string (LWT_STRING)"));

  // Setting reads no further than bufLen, terminator or not.
  std::unique_ptr<char[]> unterminated(new char[3]{'a', 'b', 'c'});
  LWValue text = {LWT_STRING};
  text.str.buf = unterminated.get();
  text.str.bufLen = 3;
  save->set(save, CTL_VALUE, &text);
  EXPECT_EQ(panels.stringValue(built.save), "abc");
}

TEST_F(PanelsTest, ScriptedModalSessionRunsItsActionsInOrder) {
  ClassicProbeRequest built = build();
  panels.script({UserAction::selectRow("Rows", 2), UserAction::press("Clear"),
                 UserAction::chooseFile("Save...", "/tmp/statistics.txt"), UserAction::close()});
  EXPECT_EQ(open(PANF_BLOCKING | PANF_FRAME), 1);
  EXPECT_EQ(events(), "select:2|clear|save:/tmp/statistics.txt|");
  EXPECT_EQ(panels.panel(built.panel).drawRequests, 1) << "\"Clear\" redrew the panel";
  EXPECT_EQ(panels.problems(), Strings{});

  // A failing action is noted and the session goes on; Cancel makes open answer 0.
  panels.script({UserAction::press("Nope"), UserAction::press("Save..."), UserAction::cancel()});
  EXPECT_EQ(open(PANF_BLOCKING | PANF_CANCEL), 0);
  EXPECT_TRUE(Mentions(panels.problems(), "no control labelled \"Nope\""));
  EXPECT_TRUE(Mentions(panels.problems(), "choose a file name"));

  // The plug-in closing its own panel ends the session with its PAN_RESULT; "Clear" never runs.
  // Nobody scripted: the user presses Continue at once.
  panels.script({UserAction::press("Done"), UserAction::press("Clear")});
  EXPECT_EQ(open(PANF_BLOCKING), 7);
  EXPECT_EQ(open(PANF_BLOCKING), 1);
  EXPECT_EQ(events(), "select:2|clear|save:/tmp/statistics.txt|done|");

  // An exception from a plug-in callback (here the list box's, while the panel is drawn) stays in
  // the host, noted, and the session goes on.
  build(/*throwFromName=*/true);
  panels.script({UserAction::inspect([](lwhost::Panels& p, LWPanelID id) { p.renderPanel(id); }),
                 UserAction::selectRow("Rows", 0), UserAction::close()});
  EXPECT_EQ(open(PANF_BLOCKING), 1);
  EXPECT_EQ(events(), "select:2|clear|save:/tmp/statistics.txt|done|select:0|");
  EXPECT_TRUE(
      Mentions(panels.problems(), "\"Rows\" (ListBoxControl) on panel \"Probe Statistics\" threw: probe name failure"));
}

// The bounding box of the pixels for which test(colour, x, y) holds, and their number.
struct Box {
  int x0 = 1 << 30, y0 = 1 << 30, x1 = -1, y1 = -1, count = 0;
  int height() const { return y1 - y0 + 1; }
};

template <class Test>
Box Where(const lwhost::Raster& image, Test test) {
  Box b;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (test(image.get(x, y), x, y))
        b = {std::min(b.x0, x), std::min(b.y0, y), std::max(b.x1, x), std::max(b.y1, y), b.count + 1};
  return b;
}

TEST_F(PanelsTest, ControlsStackDownwardsAndShowTheirRowsAndSelection) {
  ClassicProbeRequest built = build();
  const std::vector<lwhost::ControlInfo> controls = panels.controls(built.panel);
  ASSERT_EQ(controls.size(), 4u);
  const lwhost::PanelRect list = controls[0].rect, clear = controls[1].rect;
  const lwhost::PanelRect save = controls[2].rect, done = controls[3].rect;

  // The list box: 200 pixels of rows, its label to the left and counted in its width.
  EXPECT_EQ(list.y, 0);
  EXPECT_EQ(controls[0].hot.w, 200);
  EXPECT_EQ(controls[0].hot.x + controls[0].hot.w, list.w);
  EXPECT_GT(controls[0].hot.x, 0);
  EXPECT_GE(list.h, 5 * lwhost::Raster::textHeight());

  // Stacked downwards in the order added, each below the one added before it.
  EXPECT_EQ(clear.x, 0);
  EXPECT_GT(clear.y, list.y + list.h - 1);
  EXPECT_GT(done.y, clear.y + clear.h + save.h) << "\"Save...\" was below \"Clear\" when \"Done\" came";

  // "Save..." moved beside "Clear" is checked on Command Statistics' panel; the panel grows
  // around its controls.
  EXPECT_EQ(save.w, 80);
  lwhost::PanelInfo info = panels.panel(built.panel);
  EXPECT_GE(info.rect.w, list.w);
  EXPECT_GE(info.rect.h, done.y + done.h);

  open(PANF_FRAME | PANF_CANCEL);
  const RGB selection = lwhost::PaletteColour(LWP_EDIT_SEL), background = lwhost::PaletteColour(LWP_EDIT_BG);
  auto selected = [&](RGB c, int, int) { return c == selection; };
  EXPECT_EQ(Where(panels.renderPanel(built.panel), selected).count, 0) << "nothing selected";

  panels.selectRow(built.list, 0);
  const lwhost::Raster first = panels.renderPanel(built.panel);
  panels.selectRow(built.list, 2);
  const lwhost::Raster third = panels.renderPanel(built.panel);
  // One row is highlighted, across the list's width, and the highlight moves down two rows.
  const Box row0 = Where(first, selected), row2 = Where(third, selected);
  const int h = row0.height();
  ASSERT_GE(h, lwhost::Raster::textHeight());
  EXPECT_EQ(row2.y0 - row0.y0, 2 * h);
  EXPECT_GT(row0.x1 - row0.x0, 150);

  // Text in rows [from, to) of the list: each of the three rows carries some, the two below none,
  // and after "Clear" there is none at all.
  auto text = [&](const lwhost::Raster& image, int from, int to) {
    return Where(image, [&](RGB c, int x, int y) {
             return c != background && c != selection && x >= row0.x0 && x <= row0.x1 && y >= row0.y0 + from * h &&
                    y < row0.y0 + to * h;
           }).count;
  };
  for (int r = 0; r < 5; ++r) EXPECT_EQ(text(third, r, r + 1) > 10, r < 3) << "row " << r;
  panels.press(built.clear);
  EXPECT_EQ(text(panels.renderPanel(built.panel), 0, 5), 0);

  // The plug-in's own drawing shows. Ghosted controls still take clicks; erased ones are gone
  // from sight, exactly their rectangle, and from the mouse.
  EXPECT_EQ(Where(panels.renderPanel(built.panel), [](RGB c, int, int) { return c == RGB{255, 0, 0}; }).count, 100);
  auto* button = static_cast<LWControl*>(built.clear);
  button->draw(button, DR_GHOST);
  panels.press(built.clear);
  const lwhost::Raster ghosted = panels.renderPanel(built.panel);
  button->draw(button, DR_ERASE);
  LWValue flags = {LWT_INTEGER};
  button->get(button, CTL_FLAGS, &flags);
  EXPECT_EQ(flags.intv.value & (CTLF_INVISIBLE | CTLF_DISABLE), CTLF_INVISIBLE | CTLF_DISABLE);
  EXPECT_THROW(panels.press(built.clear), PanelError);
  const Box erased =
      Where(panels.renderPanel(built.panel), [&](RGB c, int x, int y) { return c != ghosted.get(x, y); });
  EXPECT_EQ(erased.x1 - erased.x0 + 1, clear.w);
  EXPECT_EQ(erased.height(), clear.h);
  button->draw(button, DR_RENDER);
  panels.press(built.clear);
  EXPECT_EQ(events(), "select:0|select:2|clear|clear|clear|");
}

// ---- The table called directly ----

LWPanelFuncs* Services() {
  return static_cast<LWPanelFuncs*>(Host::lookupFunction()(LWPANELFUNCS_GLOBAL, GFUSE_TRANSIENT));
}

char* Text(const char* text) { return const_cast<char*>(text); }

TEST(PanelServices, WhatPluginsHandInIsCheckedNotTrusted) {
  Host host;
  LWPanelID (*create)(char*, void*) = nullptr;
  {
    lwhost::Panels panels(host);
    LWPanelFuncs* pf = Services();
    create = pf->create;
    EXPECT_EQ(pf->globalFun, Host::lookupFunction());

    // The lwpanel.h macros, as plug-ins use them, work on a description record and values of
    // these names.
    ControlDesc desc{};
    LWValue ival = {LWT_INTEGER}, sval = {LWT_STRING};
    LWPanelID pan = PAN_CREATE(pf, Text("Lifecycle"));
    void* pointer = nullptr;
    pf->get(pan, PAN_PANFUN, &pointer);
    EXPECT_EQ(pointer, pf) << "create was given no table: the host's own";
    LWControl* a = BUTTON_CTL(pf, pan, Text("A"));
    LWControl* b = BUTTON_CTL(pf, pan, Text("B"));
    EXPECT_EQ(pf->nextControl(pan, nullptr), a);
    EXPECT_EQ(pf->nextControl(pan, a), b);
    EXPECT_EQ(pf->nextControl(pan, b), nullptr);

    // Not while it is open; nobody is at a headless host, so handle() ends the user's session.
    EXPECT_EQ(pf->open(pan, 0), 1);
    EXPECT_EQ(pf->open(pan, 0), 0);
    pf->destroy(pan);
    EXPECT_TRUE(Mentions(panels.problems(), "is open; close it first"));
    EXPECT_EQ(pf->handle(pan, 0), -1);
    EXPECT_FALSE(panels.panel(pan).open);
    auto controlGet = a->get;
    pf->destroy(pan);
    EXPECT_THROW(panels.panel(pan), PanelError);

    // Stale and made-up handles: nothing is read or written through them.
    panels.clearProblems();
    int sentinel = 12345;
    pf->get(pan, PAN_W, &sentinel);
    EXPECT_EQ(sentinel, 12345);
    ival.intv.value = 99;
    controlGet(a, CTL_X, &ival);  // `a` is freed: only its address may be used
    int local = 0;
    EXPECT_EQ(pf->open(&local, PANF_BLOCKING), 0);
    EXPECT_EQ(BUTTON_CTL(pf, &local, Text("C")), nullptr);
    EXPECT_EQ(pf->handle(&local, 0), -1);
    controlGet(&local, CTL_VALUE, &ival);
    EXPECT_EQ(ival.intv.value, 99);
    EXPECT_EQ(panels.problems().size(), 6u) << "each refusal noted";

    // A class the host does not simulate is kept as a plain box, noted.
    LWPanelID odd = PAN_CREATE(pf, Text("Odd controls"));
    desc.type = LWT_STRING;
    LWControl* edit = pf->addControl(odd, Text("EditControl"), &desc, Text("Name"));
    ASSERT_NE(edit, nullptr);
    EXPECT_FALSE(panels.control(edit).simulated);
    EXPECT_TRUE(Mentions(panels.problems(), "\"EditControl\" is not simulated"));

    // Whatever is stored comes back by the value's type.
    char text[] = "Bob";
    int number = 0;
    SET_INT(edit, 42);
    SET_STR(edit, text, sizeof text);
    text[0] = '\0';
    GET_INT(edit, number);
    GET_STR(edit, text, sizeof text);
    EXPECT_EQ(number, 42);
    EXPECT_STREQ(text, "Bob");

    // No class name, no description record, a list box opened without its user data.
    EXPECT_EQ(pf->addControl(odd, nullptr, &desc, Text("x")), nullptr);
    LWControl* list = pf->addControl(odd, Text("ListBoxControl"), nullptr, Text("Empty"));
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(panels.listRows(list).empty());
    EXPECT_TRUE(Mentions(panels.problems(), "came without a description record"));
    pf->open(odd, 0);
    EXPECT_TRUE(Mentions(panels.problems(), "\"Empty\" (ListBoxControl) on panel \"Odd controls\" has no CTL_USER"));
  }
  // With the component gone the service is gone, and stray calls answer failure.
  EXPECT_EQ(Services(), nullptr);
  EXPECT_EQ(create(Text("Late"), nullptr), nullptr);
}

}  // namespace
