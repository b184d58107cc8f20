// The framework's form panels as the host sees them: the logo, the web button, callbacks
// without an instance.
#ifndef _WIN32
#include <sys/wait.h>
#endif

#include <cerrno>
#include <string>

#include "FakeLauncher.h"
#include "lwhost/FormRenderer.h"
#include "support/VornNodeTest.h"

namespace {

constexpr unsigned int kWebButton = 0x9900, kLogo = 0x9901;

using FormPanelTest = VornNodeTest;

TEST_F(FormPanelTest, LogoSitsAtTheCentringOffsetBothWays) {
  lwhost::XPanel& form = panel(add("vornTimeInfo"));
  const int width = 320;
  lwhost::Raster exact = form.drawControl(kLogo, width, 56);
  const lwhost::RGB white{255, 255, 255};
  EXPECT_EQ(form.thumbnailOptions(kLogo), 0x80000601u) << "full width, small, borderless";

  // At 56 pixels the logo starts at x = 0; stored row k lands on y = 56 - k, so the top line
  // stays white and the bottom line carries the first stored row.
  bool inked = false;
  for (int x = 0; x < 104; ++x) {
    EXPECT_EQ(exact.get(x, 0), white) << x;
    inked = inked || exact.get(x, 30) != white;
  }
  EXPECT_TRUE(inked);

  // Taller areas shift it right and down by the same truncated offset.
  for (int height : {57, 58, 80, 99}) {
    const int off = (height - 56) / 2;
    lwhost::Raster taller = form.drawControl(kLogo, width, height);
    for (int y = 1; y < 56; ++y)
      for (int x = 0; x < 104; ++x) ASSERT_EQ(taller.get(x + off, y + off), exact.get(x, y)) << height << " " << x << "," << y;
    for (int x = 0; x < off; ++x) EXPECT_EQ(taller.get(x, 20 + off), white) << height;
  }
}

TEST_F(FormPanelTest, VersionAndDateAreRightAligned) {
  lwhost::XPanel& form = panel(add("vornTimeInfo"));
  const int width = 400, height = 56;
  lwhost::Raster drawn = form.drawControl(kLogo, width, height);

#if defined(__linux__) && defined(__x86_64__)
  const std::string version = "V1.4 (Linux-x86_64)";
#elif defined(_WIN32) && defined(__x86_64__)
  const std::string version = "V1.4 (Windows-x86_64)";
#else
  const std::string version;
  GTEST_SKIP() << "version text names another platform";
#endif
  const std::string date = "Nov 21 2026";
  lwhost::Raster expected(width, height);
  const lwhost::RGB ink = lwhost::PaletteColour(0x1029);
  expected.drawText(width - lwhost::Raster::textWidth(version) - 4, 4, version, ink);
  expected.drawText(width - lwhost::Raster::textWidth(date) - 4, lwhost::Raster::textHeight() + 8, date, ink);
  for (int y = 0; y < height; ++y)
    for (int x = 120; x < width; ++x) ASSERT_EQ(drawn.get(x, y), expected.get(x, y)) << x << "," << y;
}

TEST_F(FormPanelTest, CallbacksWithoutAnInstanceDoNothing) {
  lwhost::PluginNode& node = add("MaterialBlender");
  lwhost::XPanel& form = panel(node);
  const unsigned int diffuseMode = 0x9001;
  ASSERT_FALSE(form.value(diffuseMode).isNull());
  void* instance = form.instance();
  form.setInstance(nullptr);
  EXPECT_TRUE(form.value(diffuseMode).isNull());
  form.setInteger(diffuseMode, 3);
  EXPECT_EQ(form.lastSetResult(), 0);
  form.setInstance(instance);
  EXPECT_EQ(form.value(diffuseMode).integer[0], 0);  // the node never saw the edit

  // Dragging only updates the node's preview; a committed value re-evaluates the node instead.
  session.host().clearInstanceUpdates();
  ASSERT_TRUE(form.notify(diffuseMode, lwhost::XPanel::kTrack));
  EXPECT_EQ(node.previewUpdates(), 1);
  EXPECT_TRUE(session.host().instanceUpdates().empty());
  ASSERT_TRUE(form.setInteger(diffuseMode, 3));
  EXPECT_EQ(node.previewUpdates(), 1);
  EXPECT_EQ(session.host().instanceUpdates().size(), 1u);
}

TEST_F(FormPanelTest, WebButtonOpensTheMakersPageWithoutWaiting) {
  lwhost::XPanel& form = panel(add("vornExSpotInfo"));
  FakeLauncher launcher;
  launcher.install();
  EXPECT_TRUE(form.click(kWebButton));
  launcher.go();  // only now may the launcher answer: the click must already have returned
  EXPECT_EQ(launcher.answer(), "ok http://www.vorn.example/|1\n");
#ifndef _WIN32
  // No child is left for the host to reap.
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
#endif

  // Without any launcher the click is silent.
  launcher.installNothing();
  EXPECT_TRUE(form.click(kWebButton));
  EXPECT_TRUE(session.host().messages().messages().empty());
}

}  // namespace
