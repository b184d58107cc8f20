// A master plug-in's classic options panel, driven by a scripted user.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lwhost/HandlerInstance.h"
#include "lwhost/Session.h"
#include "lwhost/UserAction.h"
#include "support/ModulePaths.h"
#include "support/RawHandler.h"

namespace {

using lwhost::UserAction;

class ClassicPanelTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  const lwhost::ModuleFile& fixture = session.load(testpaths::kFixture);
};

TEST_F(ClassicPanelTest, InterfaceGivesAnOptionsCallbackFromVersionFour) {
  const ServerRecord& record = fixture.require(LWMASTER_ICLASS, "fixtureClassic");
  LWInterface local{};
  local.panel = reinterpret_cast<LWXPanelID>(0x1);
  for (int version : {1, 2, 3}) EXPECT_EQ(fixture.activate(record, version, &local), AFUNC_BADVERSION);
  EXPECT_EQ(fixture.activate(record, 4, nullptr), AFUNC_OK);
  ASSERT_EQ(fixture.activate(record, 4, &local), AFUNC_OK);
  EXPECT_EQ(local.panel, nullptr);
  EXPECT_NE(local.options, nullptr);
  EXPECT_EQ(local.command, nullptr);
}

TEST_F(ClassicPanelTest, ControlsFindTheirHandlerThroughThePanel) {
  RawMasterHandler raw;
  ASSERT_EQ(raw.activate(fixture, "fixtureClassic", LWMASTER_VERSION), AFUNC_OK);
  lwhost::HandlerInstance master(fixture, raw.inst, &raw.item, nullptr, "fixtureClassic");
  lwhost::InterfaceActivation ia = master.activateInterface(fixture.require(LWMASTER_ICLASS, "fixtureClassic"));
  ASSERT_NE(ia.local.options, nullptr);

  std::vector<std::string> rows;
  const std::string longName(3000, 'n');
  session.panels().script({UserAction::inspect([&](lwhost::Panels& panels, LWPanelID panel) {
                             rows = panels.listRows(panels.findControl(panel, "Rows"));
                           }),
                           UserAction::selectRow("Rows", 1), UserAction::press("Press"),
                           UserAction::chooseFile("Save...", longName), UserAction::close()});
  EXPECT_EQ(ia.local.options(master.get()), nullptr);
  EXPECT_EQ(rows, (std::vector<std::string>{"alpha", "beta", "gamma"}));
  // With no name held yet the buffer is 2048 bytes: the long name is cut to 2047 characters.
  EXPECT_EQ(master.description(), "row 1;press;file 2047;");

  // Later reads size the buffer from the name held so far.
  session.panels().script({UserAction::chooseFile("Save...", "short.txt"), UserAction::close()});
  ia.local.options(master.get());
  EXPECT_EQ(master.description(), "row 1;press;file 2047;file 9;");
  session.panels().script({UserAction::chooseFile("Save...", "a-much-longer-name.txt"), UserAction::close()});
  ia.local.options(master.get());
  EXPECT_EQ(master.description(), "row 1;press;file 2047;file 9;file 9;");
  EXPECT_TRUE(session.panels().problems().empty());
}

}  // namespace
