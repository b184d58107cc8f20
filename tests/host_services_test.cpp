// The framework's host-service holders and host information, seen from the host's side.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lwhost/Animation.h"
#include "lwhost/Host.h"
#include "support/FixtureProbe.h"

namespace {

class HostServicesTest : public ::testing::Test {
 protected:
  lwhost::Host host;
  FixtureProbe probe;
};

TEST_F(HostServicesTest, HoldersShareOneAcquisitionCount) {
  static int service = 0;
  host.globals().provide(FIXTURE_PROBE_SERVICE, &service);
  ProbeRequest r = probe.run("hold", 3);
  EXPECT_EQ(r.result, 1);
  lwhost::LookupCounts c = host.globals().counts(FIXTURE_PROBE_SERVICE);
  EXPECT_EQ(c.acquire, 3);
  EXPECT_EQ(c.release, 1);  // only when the last of the three went
  EXPECT_EQ(c.transient, 0);

  // A second round starts from zero again: one more release, not a drifting count.
  probe.run("hold", 2);
  c = host.globals().counts(FIXTURE_PROBE_SERVICE);
  EXPECT_EQ(c.acquire, 5);
  EXPECT_EQ(c.release, 2);
}

TEST_F(HostServicesTest, MissingServiceIsNeverReleased) {
  // Not provided at all, then provided but withheld: both look like a host without it.
  ProbeRequest r = probe.run("hold", 3);
  EXPECT_EQ(r.result, 0);
  static int service = 0;
  host.globals().provide(FIXTURE_PROBE_SERVICE, &service);
  host.globals().withhold(FIXTURE_PROBE_SERVICE);
  r = probe.run("hold", 1);
  EXPECT_EQ(r.result, 0);
  lwhost::LookupCounts c = host.globals().counts(FIXTURE_PROBE_SERVICE);
  EXPECT_EQ(c.acquire, 4);
  EXPECT_EQ(c.release, 0);

  // The missed holders left the shared count below zero, so a real holder now is not released
  // when it goes either: the count only returns to where it stood.
  host.globals().withhold(FIXTURE_PROBE_SERVICE, false);
  r = probe.run("hold", 1);
  EXPECT_EQ(r.result, 1);
  EXPECT_EQ(host.globals().counts(FIXTURE_PROBE_SERVICE).release, 0);
}

TEST_F(HostServicesTest, ParameterBuiltFromOneNumberHoldsItInEveryChannel) {
  lwhost::Animation animation{host};
  EXPECT_EQ(probe.run("vparm", 3).result, 3);
}

TEST_F(HostServicesTest, NodeInputServiceFollowsHostVersion) {
  struct Case {
    unsigned major, minor;
    const char* expected;
    const char* other;
  };
  const Case cases[] = {{9, 4, "NodeInputFuncs", "NodeInputFuncs 2"},
                        {8, 7, "NodeInputFuncs", "NodeInputFuncs 2"},
                        {9, 5, "NodeInputFuncs 2", "NodeInputFuncs"},
                        {10, 0, "NodeInputFuncs 2", "NodeInputFuncs"}};
  static int table = 0;
  host.globals().provide("NodeInputFuncs", &table);
  host.globals().provide("NodeInputFuncs 2", &table);
  for (const Case& c : cases) {
    host.globals().resetCounts();
    host.setVersion(c.major, c.minor);
    ProbeRequest r = probe.run("input-service");
    EXPECT_EQ(r.result, 1);
    EXPECT_EQ(host.globals().counts(c.expected).acquire, 1) << c.major << "." << c.minor;
    EXPECT_EQ(host.globals().counts(c.expected).release, 1) << c.major << "." << c.minor;
    EXPECT_EQ(host.globals().counts(c.other).acquire, 0) << c.major << "." << c.minor;
  }
}

TEST_F(HostServicesTest, ModuleAsksForEveryServiceByItsVersionedName) {
  host.globals().resetCounts();
  ProbeRequest r = probe.run("names");
  const std::vector<std::string> expected = {
      "System ID", "Product Info", "Info Messages 2", "NodeFuncs", "NodeInputFuncs", "NodeInputFuncs 2",
      "NodeOutputFuncs", "NodeUtilityFuncs", "Instance Update", "LWXPanel", "LWPanelServices",
      "Directory Info", "LW Item Info 3", "LW Scene Info 3", "LW Time Info", "LWVParmFuncs 2",
      "Animation Envelopes", "LW Interface Info 5", "LW Timer", "RasterServices", "LW Server Info",
      "LW Communication Ring", "Preview Functions", "Channel Info 2", "MultiThreading Utilities",
      "Texture Editor 2", "Texture Functions 3", "Surface Functions 3", "Scene Objects 4",
      "LW Object Info 4", "NodeEditorFuncs", "LWLMonFuncs", "File IO", "LW Image List 3",
      "Image Utility", "File Request 2", "ContextMenuServices", "LW Camera Info 2",
      "Global Memory", "LW Backdrop Info 2"};
  EXPECT_EQ(r.result, static_cast<int>(expected.size()));
  std::vector<std::string> asked = host.globals().namesAsked();
  for (const std::string& name : expected)
    EXPECT_NE(std::find(asked.begin(), asked.end(), name), asked.end()) << name;
  for (const std::string& name : expected) EXPECT_GE(host.globals().counts(name).transient, 1) << name;
}

}  // namespace
