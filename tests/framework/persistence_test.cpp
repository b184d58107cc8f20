// Saving, loading and copying plug-in state, and animatable parameters, through the host's
// scene I/O and parameter services.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lwhost/Session.h"
#include "lwhost/VParm.h"
#include "support/ModulePaths.h"
#include "support/SavedBlocks.h"

namespace {

class PersistenceTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  const lwhost::ModuleFile& fixture = session.load(testpaths::kFixture);

  lwhost::PluginNode& addParams() { return session.nodes().addPluginNode(fixture, "fixtureParams"); }

  // The node's parameters in creation order: Float, Percent, Colour, then the nested SubValue.
  std::vector<lwhost::VParm*> parameters(lwhost::PluginNode& node) {
    return session.animation().parameters(session.animation().group(node.channelGroup()));
  }

  // Gives a node non-default state: plain values, a keyed percentage, a changed leaf.
  void customise(lwhost::PluginNode& node) {
    std::vector<lwhost::VParm*> p = parameters(node);
    ASSERT_EQ(p.size(), 4u);
    double number[3] = {2.5, 2.5, 2.5}, colour[3] = {0.4, 0.5, 0.6}, sub[3] = {0.75, 0.75, 0.75};
    p[0]->setValue(number);
    p[1]->addKey(0, 0.0, 0.1);
    p[1]->addKey(0, 1.0, 0.9);
    p[2]->setValue(colour);
    p[3]->setValue(sub);
  }

  std::string describedAt(lwhost::PluginNode& node, double time) {
    EXPECT_EQ(node.newTime(0, time), "");
    return node.instance().description();
  }
};

TEST_F(PersistenceTest, StateSurvivesSaveAndLoadInAnyBlockOrderPastUnknownBlocks) {
  lwhost::PluginNode& original = addParams();
  customise(original);
  const std::string expected = describedAt(original, 0.25);
  for (lwhost::IOMode mode : {lwhost::IOMode::Ascii, lwhost::IOMode::Binary}) {
    const bool text = mode == lwhost::IOMode::Ascii;
    std::string error;
    const std::string saved = original.instance().save(mode, &error);
    ASSERT_EQ(error, "");
    std::vector<std::string> blocks = Split(saved, mode);
    ASSERT_EQ(blocks.size(), 5u);  // Count, Float, Percent, Colour, Nested
    std::reverse(blocks.begin(), blocks.end());
    blocks.insert(blocks.begin() + 2, text ? "{ Stranger\n  Count 99\n  Float 1 2 3\n}\n" : std::string("XTRA\0\4\0\0\0\1", 10));
    if (text) blocks.insert(blocks.begin() + 1, "Mystery 7\n");
    lwhost::PluginNode& loaded = addParams();
    EXPECT_EQ(loaded.instance().load(mode, Join(blocks)), "");
    EXPECT_EQ(describedAt(loaded, 0.25), expected);
    // Nothing is lost or reformatted on the way.
    EXPECT_EQ(loaded.instance().save(mode), saved);
  }
}

TEST_F(PersistenceTest, NoBlocksLeaveEveryDefault) {
  lwhost::PluginNode& fresh = addParams();
  // A parameter made from one number holds it on all three channels until the host fills them.
  EXPECT_EQ(fresh.instance().description().rfind("count=3 float=1.5,1.5,1.5 ", 0), 0u);
  const std::string defaults = describedAt(fresh, 0.0);
  EXPECT_EQ(defaults, "count=3 float=1.5,0,0 percent=0.25 colour=0.1,0.2,0.3 sub=0.5,7");
  for (lwhost::IOMode mode : {lwhost::IOMode::Ascii, lwhost::IOMode::Binary}) {
    lwhost::PluginNode& loaded = addParams();
    EXPECT_EQ(loaded.instance().load(mode, ""), "");
    EXPECT_EQ(describedAt(loaded, 0.0), defaults);
  }
}

TEST_F(PersistenceTest, ParametersAreSampledAtTheRenderedTime) {
  lwhost::PluginNode& node = addParams();
  customise(node);
  lwhost::VParm* percent = parameters(node)[1];
  for (double t : {0.0, 0.3, 0.5, 1.0, 2.0}) {
    const double host = percent->valueAt(t)[0];
    char expected[64];
    std::snprintf(expected, sizeof expected, "percent=%g ", host);
    EXPECT_NE(describedAt(node, t).find(expected), std::string::npos) << t;
  }
  // Between the keys the value is interpolated, not held at either key.
  const double mid = percent->valueAt(0.5)[0];
  EXPECT_GT(mid, 0.1);
  EXPECT_LT(mid, 0.9);

  // The node's render path reads the sampled values.
  LWNodalAccess access = lwhost::MakeNodalAccess();
  ASSERT_EQ(node.newTime(0, 0.5), "");
  double scalar = -1, colour[3] = {-1, -1, -1};
  EXPECT_TRUE(session.nodes().evaluate(node, "Float", access, &scalar, NOT_SCALAR));
  EXPECT_EQ(scalar, 2.5);
  EXPECT_TRUE(session.nodes().evaluate(node, "Colour", access, colour, NOT_COLOR));
  EXPECT_EQ(colour[0], 0.4);
  EXPECT_EQ(colour[2], 0.6);
}

TEST_F(PersistenceTest, CopiesCarryEnvelopesAndSelfCopyChangesNothing) {
  lwhost::PluginNode& source = addParams();
  customise(source);
  lwhost::PluginNode& target = addParams();
  EXPECT_EQ(target.instance().copyFrom(source.instance()), "");
  EXPECT_EQ(describedAt(target, 0.5), describedAt(source, 0.5));
  EXPECT_TRUE(parameters(target)[1]->enveloped());
  // The copy's envelope is its own.
  parameters(source)[1]->addKey(0, 0.5, 5.0);
  EXPECT_NE(describedAt(target, 0.5), describedAt(source, 0.5));

  const std::string before = source.instance().save(lwhost::IOMode::Ascii);
  EXPECT_EQ(source.instance().copyFrom(source.instance()), "");
  EXPECT_EQ(source.instance().save(lwhost::IOMode::Ascii), before);
  EXPECT_TRUE(parameters(source)[1]->enveloped());
}

// A host that refuses to make parameters: every handle stays null. The table outlives the test,
// because the module's parameters keep the last table they were given until they go.
struct RefusingParameters {
  static inline const LWVParmFuncs* real = nullptr;
  static inline int copies = 0;
  static inline LWVParmFuncs table;

  static void Install(lwhost::Host& host, const LWVParmFuncs* hostTable) {
    real = hostTable;
    copies = 0;
    table = *hostTable;
    table.create = [](int, int) -> LWVParmID { return nullptr; };
    table.copy = [](LWVParmID to, LWVParmID from) -> LWError {
      ++copies;
      return real->copy(to, from);
    };
    host.globals().provide(LWVPARMFUNCS_GLOBAL, &table);
  }
};

TEST_F(PersistenceTest, NullParameterHandlesStillCopyTheirValues) {
  lwhost::PluginNode& real = addParams();
  customise(real);
  const std::string sampled = describedAt(real, 0.5);

  RefusingParameters::Install(session.host(), session.animation().vparmFuncs());
  lwhost::PluginNode& first = addParams();
  lwhost::PluginNode& second = addParams();
  EXPECT_TRUE(parameters(first).empty());

  // One side without a handle: only the values travel; the host's copy is never asked.
  EXPECT_EQ(first.instance().copyFrom(real.instance()), "");
  EXPECT_EQ(first.instance().description(), sampled);
  EXPECT_EQ(second.instance().copyFrom(first.instance()), "");
  EXPECT_EQ(second.instance().description(), sampled);
  EXPECT_EQ(RefusingParameters::copies, 0);
}

}  // namespace
