// Classic panels as a plug-in builds and uses them, with the host acting as the user.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "ClassicProbeFixture.h"

namespace {

using lwhost::ControlInfo;
using lwhost::PanelError;
using lwhost::PanelRect;
using lwhost::UserAction;

using PanelsTest = ClassicProbeFixture;

TEST_F(PanelsTest, PointerTagsTravelInPtrWhateverTheValueTypeSays) {
  ClassicProbeRequest built = build();
  // The probe reads its pointers back through LWT_INTEGER and LWT_STRING records, as the
  // CON_SETEVENT and CON_PAN macros do; on 64-bit builds intv.value would lose them.
  EXPECT_EQ(run("readback").result, PROBE_ALL_OK);

  ControlInfo save = panels.control(built.save);
  EXPECT_EQ(save.userData, built.handler);
  EXPECT_TRUE(save.hasEvent);
  EXPECT_EQ(panels.control(built.list).userData, built.list);
  EXPECT_EQ(panels.panel(built.panel).userData, built.handler);
  EXPECT_EQ(panels.panels(), std::vector<LWPanelID>{built.panel});
  EXPECT_EQ(panels.findPanel("Probe Statistics"), built.panel);
  EXPECT_EQ(panels.findControl(built.panel, "Save..."), built.save);
  EXPECT_TRUE(panels.problems().empty()) << Joined(panels.problems());
}

TEST_F(PanelsTest, ListBoxCallbacksGetTheControlsUserData) {
  ClassicProbeRequest built = build();
  // Not open yet: nobody can click it.
  EXPECT_THROW(panels.selectRow(built.list, 0), PanelError);
  run("open", 0);  // non-blocking: the panel stays up

  std::vector<std::string> listed = panels.listRows(built.list);
  EXPECT_EQ(listed, std::vector<std::string>(rows.begin(), rows.end()));
  EXPECT_GT(log.countCalls, 0);
  EXPECT_GE(log.nameCalls, 3);
  EXPECT_EQ(log.wrongUserData, 0);
  EXPECT_EQ(panels.intValue(built.list), -1);  // nothing selected yet

  panels.selectRow(built.list, 2);
  EXPECT_EQ(panels.intValue(built.list), 2);
  EXPECT_EQ(events(), "select:2|");  // the probe read the value back inside its event hook
  EXPECT_THROW(panels.selectRow(built.list, 3), PanelError);
  EXPECT_THROW(panels.selectRow(built.list, -1), PanelError);
  EXPECT_THROW(panels.selectRow(built.clear, 0), PanelError);
  EXPECT_EQ(events(), "select:2|");

  // The callbacks get the user data as it is now, not as it was when the box was made.
  auto* list = static_cast<LWControl*>(built.list);
  LWValue other = {LWT_POINTER};
  other.ptr.ptr = built.handler;
  list->set(list, CTL_USERDATA, &other);
  panels.listRows(built.list);
  EXPECT_GT(log.wrongUserData, 0);
  panels.userClose(built.panel);
  EXPECT_FALSE(panels.panel(built.panel).open);
}

TEST_F(PanelsTest, ScriptedModalSessionRunsItsActionsInOrder) {
  ClassicProbeRequest built = build();
  bool wasOpen = false;
  std::vector<std::string> rowsSeen;
  panels.script({UserAction::inspect([&](lwhost::Panels& p, LWPanelID id) {
                   wasOpen = p.panel(id).open;
                   rowsSeen = p.listRows(p.findControl(id, "Rows"));
                 }),
                 UserAction::selectRow("Rows", 2), UserAction::press("Clear"),
                 UserAction::chooseFile("Save...", "/tmp/statistics.txt"), UserAction::close()});
  // Open flags 5: blocking, framed, Continue only.
  EXPECT_EQ(run("open", PANF_BLOCKING | PANF_FRAME).result, 1);
  EXPECT_TRUE(wasOpen);
  EXPECT_EQ(rowsSeen.size(), 3u);
  EXPECT_EQ(events(), "select:2|clear|save:/tmp/statistics.txt|");
  lwhost::PanelInfo info = panels.panel(built.panel);
  EXPECT_FALSE(info.open);
  EXPECT_EQ(info.openFlags, 5);
  EXPECT_EQ(info.drawRequests, 1);  // "Clear" redrew the panel
  EXPECT_EQ(info.lastDrawMode, DR_REFRESH);
  EXPECT_EQ(panels.stringValue(built.save), "/tmp/statistics.txt");
  EXPECT_EQ(panels.pendingSessions(), 0u);
  EXPECT_TRUE(panels.problems().empty()) << Joined(panels.problems());

  // A failing action is noted and the session goes on; Cancel makes open answer 0.
  panels.script({UserAction::press("Nope"), UserAction::press("Save..."), UserAction::cancel()});
  EXPECT_EQ(run("open", PANF_BLOCKING | PANF_CANCEL).result, 0);
  EXPECT_TRUE(Mentions(panels.problems(), "no control labelled \"Nope\"")) << Joined(panels.problems());
  EXPECT_TRUE(Mentions(panels.problems(), "choose a file name"));

  // The plug-in closing its own panel ends the session with its PAN_RESULT; "Clear" never runs.
  panels.script({UserAction::press("Done"), UserAction::press("Clear")});
  EXPECT_EQ(run("open", PANF_BLOCKING).result, 7);
  EXPECT_EQ(events(), "select:2|clear|save:/tmp/statistics.txt|done|");

  // Nobody scripted: the user presses Continue at once.
  EXPECT_EQ(run("open", PANF_BLOCKING).result, 1);
  EXPECT_EQ(panels.panel(built.panel).opens, 4);
  EXPECT_EQ(events(), "select:2|clear|save:/tmp/statistics.txt|done|");
}

TEST_F(PanelsTest, SaveButtonValueRespectsTheCallersBuffer) {
  ClassicProbeRequest built = build();
  run("open", 0);
  const std::string name = "/tmp/command-statistics.txt";
  panels.chooseFile(built.save, name);
  EXPECT_EQ(events(), "save:" + name + "|");  // the probe read it with GET_STR in its hook

  auto* save = static_cast<LWControl*>(built.save);
  // Heap buffers of exactly bufLen bytes: one byte too many written is an ASan failure.
  for (int bufLen : {1, 2, 8, static_cast<int>(name.size()), static_cast<int>(name.size()) + 1, 64}) {
    std::unique_ptr<char[]> buffer(new char[bufLen]);
    std::fill(buffer.get(), buffer.get() + bufLen, '#');
    LWValue value = {LWT_STRING};
    value.str.buf = buffer.get();
    value.str.bufLen = bufLen;
    save->get(save, CTL_VALUE, &value);
    size_t expected = std::min(name.size(), static_cast<size_t>(bufLen - 1));
    EXPECT_EQ(std::string(buffer.get()), name.substr(0, expected)) << "bufLen " << bufLen;
  }

  // No room at all, or a value record of the wrong type: nothing written, the fault noted.
  char untouched[4] = {'#', '#', '#', '#'};
  LWValue empty = {LWT_STRING};
  empty.str.buf = untouched;
  empty.str.bufLen = 0;
  save->get(save, CTL_VALUE, &empty);
  EXPECT_EQ(untouched[0], '#');
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

TEST_F(PanelsTest, ControlsStackDownwardsAndMoveWhereThePluginPutsThem) {
  ClassicProbeRequest built = build();
  std::vector<ControlInfo> controls = panels.controls(built.panel);
  ASSERT_EQ(controls.size(), 4u);
  EXPECT_EQ(controls[0].className, "ListBoxControl");
  EXPECT_EQ(controls[1].className, "ButtonControl");
  EXPECT_EQ(controls[2].className, "SaveButtonControl");
  EXPECT_EQ(controls[3].label, "Done");
  const PanelRect list = controls[0].rect, clear = controls[1].rect, save = controls[2].rect, done = controls[3].rect;

  // The list box: 200 pixels of rows, its label to the left and counted in its width.
  EXPECT_EQ(list.x, 0);
  EXPECT_EQ(list.y, 0);
  EXPECT_EQ(controls[0].hot.w, 200);
  EXPECT_EQ(controls[0].hot.x + controls[0].hot.w, list.w);
  EXPECT_GT(controls[0].hot.x, 0);
  EXPECT_GE(list.h, 5 * lwhost::Raster::textHeight());

  // Stacked downwards in the order added, each below the one added before it.
  EXPECT_EQ(clear.x, 0);
  EXPECT_GT(clear.y, list.y + list.h - 1);
  EXPECT_GT(done.y, clear.y + clear.h + save.h);  // "Save..." was below "Clear" when "Done" came

  // The probe moved "Save..." onto the "Clear" line, flush with the list box's right edge,
  // reading the places back with CON_X/CON_W.
  EXPECT_EQ(save.w, 80);
  EXPECT_EQ(save.y, clear.y);
  EXPECT_EQ(save.x + save.w, list.x + list.w);

  // The panel grows around its controls.
  lwhost::PanelInfo info = panels.panel(built.panel);
  EXPECT_GE(info.rect.w, list.w);
  EXPECT_GE(info.rect.h, done.y + done.h);
}

TEST_F(PanelsTest, ExceptionsFromPluginCallbacksStayInTheHost) {
  ClassicProbeRequest built = build(/*throwFromName=*/true);
  panels.script({UserAction::inspect([](lwhost::Panels& p, LWPanelID id) { p.renderPanel(id); }),
                 UserAction::selectRow("Rows", 0), UserAction::close()});
  EXPECT_EQ(run("open", PANF_BLOCKING).result, 1);
  EXPECT_EQ(events(), "select:0|");
  EXPECT_TRUE(Mentions(panels.problems(),
                       "name callback of \"Rows\" (ListBoxControl) on panel "
                       "\"Probe Statistics\" threw: probe name failure"));
  EXPECT_FALSE(panels.panel(built.panel).open);
}

// Bounding box of the pixels of one colour.
struct Box {
  int x0 = 1 << 30, y0 = 1 << 30, x1 = -1, y1 = -1;
  bool empty() const { return x1 < 0; }
  int height() const { return y1 - y0 + 1; }
};

Box Find(const lwhost::Raster& image, lwhost::RGB colour) {
  Box b;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.get(x, y) == colour) {
        b.x0 = std::min(b.x0, x), b.y0 = std::min(b.y0, y);
        b.x1 = std::max(b.x1, x), b.y1 = std::max(b.y1, y);
      }
  return b;
}

// Pixels in a region that are neither of two colours: the text on a row.
int Ink(const lwhost::Raster& image, lwhost::RGB a, lwhost::RGB b, int x0, int y0, int x1, int y1) {
  int n = 0;
  for (int y = y0; y <= y1; ++y)
    for (int x = x0; x <= x1; ++x) n += image.get(x, y) != a && image.get(x, y) != b;
  return n;
}

TEST_F(PanelsTest, RenderedPanelShowsTheRowsAndTheSelection) {
  ClassicProbeRequest built = build();
  run("open", PANF_FRAME | PANF_CANCEL);
  const lwhost::RGB selection = lwhost::PaletteColour(LWP_EDIT_SEL);
  const lwhost::RGB rowBackground = lwhost::PaletteColour(LWP_EDIT_BG);
  ASSERT_NE(selection, rowBackground);

  EXPECT_TRUE(Find(panels.renderPanel(built.panel), selection).empty());  // nothing selected

  panels.selectRow(built.list, 0);
  lwhost::Raster first = panels.renderPanel(built.panel);
  panels.selectRow(built.list, 2);
  lwhost::Raster third = panels.renderPanel(built.panel);
  ASSERT_TRUE(first.writePng(std::string(PANEL_PICTURE_DIR) + "/classic_probe_panel.png"));

  // One row is highlighted, and the highlight moves down two rows with the selection.
  Box row0 = Find(first, selection), row2 = Find(third, selection);
  ASSERT_FALSE(row0.empty());
  ASSERT_FALSE(row2.empty());
  EXPECT_EQ(row0.height(), row2.height());
  EXPECT_GE(row0.height(), lwhost::Raster::textHeight());
  EXPECT_EQ(row2.y0 - row0.y0, 2 * row0.height());
  EXPECT_EQ(row0.x0, row2.x0);
  EXPECT_GT(row0.x1 - row0.x0, 150);  // across the list's width

  // Each visible row carries its text; after "Clear" the list is empty.
  const int listBottom = row0.y0 + 5 * row0.height() - 1;
  for (int r = 0; r < 3; ++r) {
    int y = row0.y0 + r * row0.height();
    EXPECT_GT(Ink(third, rowBackground, selection, row0.x0, y, row0.x1, y + row0.height() - 1), 10) << "row " << r;
  }
  EXPECT_EQ(Ink(third, rowBackground, selection, row0.x0, row0.y0 + 3 * row0.height(), row0.x1, listBottom), 0);
  panels.press(built.clear);
  lwhost::Raster cleared = panels.renderPanel(built.panel);
  EXPECT_EQ(Ink(cleared, rowBackground, selection, row0.x0, row0.y0, row0.x1, listBottom), 0);
  ASSERT_TRUE(cleared.writePng(std::string(PANEL_PICTURE_DIR) + "/classic_probe_panel_cleared.png"));
}

}  // namespace
