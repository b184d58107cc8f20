// The framework's activation adaptors and exception guards, driven through the fixture module's
// records exactly as a host calls them.
#include <gtest/gtest.h>
#include <lwmaster.h>
#include <lwnodes.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "support/FixtureProbe.h"
#include "support/RawHandler.h"

namespace {

class AdaptorTest : public ::testing::Test {
 protected:
  lwhost::Host host;
  FixtureProbe probe;
  const lwhost::ModuleFile& module = probe.module();

  int live() { return probe.run("live").result; }

  // The one error message that must have been reported since the last call.
  void expectOneError(const char* first, const char* second) {
    std::vector<lwhost::Message> errors = host.messages().errors();
    ASSERT_EQ(errors.size(), 1u) << first;
    EXPECT_EQ(errors[0].first, first);
    EXPECT_EQ(errors[0].second, second);
    host.messages().clear();
  }
};

TEST_F(AdaptorTest, NodeActivationAcceptsOnlyItsVersions) {
  struct Case {
    const char* server;
    int version;
    int expected;
  };
  const Case cases[] = {{"fixtureStdThrower", 0, AFUNC_BADVERSION}, {"fixtureStdThrower", 1, AFUNC_OK},
                        {"fixtureStdThrower", 2, AFUNC_OK},         {"fixtureStdThrower", 3, AFUNC_BADVERSION},
                        {"fixtureOneVersion", 1, AFUNC_OK},         {"fixtureOneVersion", 2, AFUNC_BADVERSION}};
  for (const Case& c : cases) {
    RawNodeHandler raw;
    Poison(raw.inst);
    Poison(raw.rend);
    Poison(raw.item);
    void* flagsMark = reinterpret_cast<void*>(raw.handler.flags = reinterpret_cast<unsigned int (*)(LWInstance)>(0x1234));
    EXPECT_EQ(raw.activate(module, c.server, c.version), c.expected) << c.server << " v" << c.version;
    if (c.expected == AFUNC_BADVERSION) {
      // A refused version touches nothing, so the host can try another.
      EXPECT_TRUE(IsPoisoned(raw.inst) && IsPoisoned(raw.rend) && IsPoisoned(raw.item)) << c.server << c.version;
      EXPECT_EQ(reinterpret_cast<void*>(raw.handler.flags), flagsMark);
      EXPECT_EQ(raw.handler.evaluate, nullptr);
      continue;
    }
    EXPECT_EQ(raw.inst.priv, nullptr);
    EXPECT_NE(raw.inst.create, nullptr);
    EXPECT_NE(raw.inst.descln, nullptr);
    EXPECT_NE(raw.rend.newTime, nullptr);
    EXPECT_NE(raw.item.useItems, nullptr);
    EXPECT_NE(raw.handler.evaluate, nullptr);
    EXPECT_NE(raw.handler.customPreview, nullptr);
    // Version 1's record ends before the flags entry: it must stay as the host left it.
    if (c.version == 1)
      EXPECT_EQ(reinterpret_cast<void*>(raw.handler.flags), flagsMark);
    else
      EXPECT_NE(reinterpret_cast<void*>(raw.handler.flags), flagsMark);
  }
}

TEST_F(AdaptorTest, ModellerKeepsItsItemTable) {
  host.actAs(lwhost::Application::Modeler);
  RawNodeHandler raw;
  Poison(raw.item);
  ASSERT_EQ(raw.activate(module, "fixtureItems", 2), AFUNC_OK);
  EXPECT_TRUE(IsPoisoned(raw.item));
  EXPECT_NE(raw.inst.create, nullptr);

  host.actAs(lwhost::Application::Layout);
  RawNodeHandler layout;
  Poison(layout.item);
  ASSERT_EQ(layout.activate(module, "fixtureItems", 2), AFUNC_OK);
  EXPECT_NE(layout.item.useItems, nullptr);
  EXPECT_NE(layout.item.changeID, nullptr);

  // A null item table is simply skipped.
  RawNodeHandler none;
  none.handler.item = nullptr;
  EXPECT_EQ(none.activate(module, "fixtureItems", 2), AFUNC_OK);
}

TEST_F(AdaptorTest, StandardExceptionsBecomeOneMessageAndANeutralResult) {
  RawNodeHandler raw;
  ASSERT_EQ(raw.activate(module, "fixtureStdThrower", 2), AFUNC_OK);
  const int before = live();
  LWError err = nullptr;
  LWInstance node = raw.inst.create(nullptr, nullptr, &err);
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(live(), before + 1);

  double value[3] = {7, 8, 9};
  raw.handler.evaluate(node, nullptr, nullptr, value);
  expectOneError("An exception occured in NodeHandler::evaluate():", "evaluate failed");
  EXPECT_EQ(value[0], 7);

  raw.handler.customPreview(node, 64, 64);
  expectOneError("An exception occured in NodeHandler::customPreview():", "preview failed");

  EXPECT_EQ(raw.handler.flags(node), 0u);
  expectOneError("An exception occured in NodeHandler::Flags():", "flags failed");

  EXPECT_EQ(raw.item.useItems(node), nullptr);
  expectOneError("An exception occured in Item::UseItems():", "items failed");

  const LWItemID pairs[] = {UINT2LWITEMID(1), UINT2LWITEMID(2), LWITEM_NULL};
  raw.item.changeID(node, pairs);
  expectOneError("An exception occured in Item::ChangeID():", "renumber failed");

  raw.rend.cleanup(node);
  expectOneError("An exception occured in Render::Cleanup():", "cleanup failed");

  // A destructor that throws is reported, and the object is gone all the same.
  raw.inst.destroy(node);
  expectOneError("An exception occured in Instance::Destroy():", "destroy failed");
  EXPECT_EQ(live(), before);
}

// A host whose look-up throws part-way through an activation: each activation reports it under
// its own text and refuses.
void* ThrowingLookup(const char* name, int use) {
  if (std::strcmp(name, "System ID") == 0) throw std::runtime_error("lookup failed");
  return lwhost::Host::lookupFunction()(name, use);
}

TEST_F(AdaptorTest, ActivationsReportTheirOwnFailures) {
  probe.run("hooks");  // the message service is held from here on
  struct Case {
    const char* hostClass;
    const char* server;
    int version;
    const char* text;
  };
  const Case cases[] = {
      {LWNODE_HCLASS, "fixtureStdThrower", 2, "An exception occured in NodeHandler::Activate():"},
      {LWMASTER_HCLASS, "fixtureMaster", 4, "An exception occured in MasterAdaptor::Activate():"},
      {LWNODE_ICLASS, "fixtureItemRef", 4, "An exception occured in Xpanel::Interface():"},
      {LWMASTER_ICLASS, "fixtureClassic", 4, "An exception occured in LWPanel::Activate():"}};
  for (const Case& c : cases) {
    RawMasterHandler tables;  // big enough for every record; its pointers stay unused
    LWInterface local{};
    void* record = std::strcmp(c.hostClass, LWNODE_ICLASS) == 0 || std::strcmp(c.hostClass, LWMASTER_ICLASS) == 0
                       ? static_cast<void*>(&local)
                       : static_cast<void*>(&tables.handler);
    EXPECT_EQ(module.require(c.hostClass, c.server).activate(c.version, ThrowingLookup, record, module.serverData()),
              AFUNC_BADAPP)
        << c.server;
    expectOneError(c.text, "lookup failed");
  }
}

TEST_F(AdaptorTest, OtherExceptionsPassThroughUnreported) {
  RawNodeHandler raw;
  ASSERT_EQ(raw.activate(module, "fixtureOtherThrower", 2), AFUNC_OK);
  LWError err = nullptr;
  LWInstance node = raw.inst.create(nullptr, nullptr, &err);
  ASSERT_NE(node, nullptr);
  EXPECT_ANY_THROW(raw.handler.evaluate(node, nullptr, nullptr, nullptr));
  EXPECT_THROW(raw.handler.flags(node), int);
  EXPECT_ANY_THROW(raw.rend.cleanup(node));
  EXPECT_TRUE(host.messages().errors().empty());
  raw.inst.destroy(node);
}

TEST_F(AdaptorTest, NullInstancesAreIgnored) {
  RawNodeHandler raw;
  ASSERT_EQ(raw.activate(module, "fixtureStdThrower", 2), AFUNC_OK);
  double value = 5;
  raw.handler.evaluate(nullptr, nullptr, nullptr, &value);
  raw.inst.destroy(nullptr);
  // Also where Evaluate is noexcept and the adaptor calls it without a guard.
  lwhost::ModuleFile vorn(testpaths::kVorn);
  RawNodeHandler timeInfo;
  ASSERT_EQ(timeInfo.activate(vorn, "vornTimeInfo", 2), AFUNC_OK);
  timeInfo.handler.evaluate(nullptr, nullptr, nullptr, &value);
  EXPECT_EQ(value, 5);
  EXPECT_TRUE(host.messages().messages().empty());
}

TEST_F(AdaptorTest, RefusedCreationLeavesNothingBehind) {
  // Tables the refused constructor holds but never calls into.
  static char unused[256];
  for (const char* name : {"NodeFuncs", "NodeOutputFuncs", "NodeUtilityFuncs"}) host.globals().provide(name, unused);
  RawNodeHandler raw;
  ASSERT_EQ(raw.activate(module, "fixtureGated", 2), AFUNC_OK);
  for (auto version : {std::pair<unsigned, unsigned>{9, 1}, {8, 5}}) {
    host.setVersion(version.first, version.second);
    ASSERT_EQ(raw.activate(module, "fixtureGated", 2), AFUNC_OK);  // re-reads the host's version
    const int before = live();
    LWError err = nullptr;
    EXPECT_EQ(raw.inst.create(nullptr, nullptr, &err), nullptr);
    EXPECT_STREQ(err, "This plugin needs a newer version of LightWave 3D (9.2 as a minimum)");
    EXPECT_EQ(live(), before);
  }
  // The half-built objects released every service they took.
  for (const char* name : {"NodeFuncs", "NodeOutputFuncs", "NodeUtilityFuncs", "Instance Update"}) {
    lwhost::LookupCounts c = host.globals().counts(name);
    EXPECT_EQ(c.acquire, c.release) << name;
  }
}

TEST_F(AdaptorTest, ItemsFollowRenumberingChains) {
  RawNodeHandler raw;
  ASSERT_EQ(raw.activate(module, "fixtureItems", 2), AFUNC_OK);
  const LWItemID A = UINT2LWITEMID(0x20000000), B = UINT2LWITEMID(0x20000001),
                 C = UINT2LWITEMID(0x20000002), D = UINT2LWITEMID(0x20000003);
  const LWItemID start[] = {A, B, C, LWITEM_NULL};
  LWError err = nullptr;
  LWInstance node = raw.inst.create(const_cast<LWItemID*>(start), nullptr, &err);
  ASSERT_NE(node, nullptr);

  const LWItemID* used = raw.item.useItems(node);
  EXPECT_EQ(std::vector<LWItemID>(used, used + 4), (std::vector<LWItemID>{A, B, C, LWITEM_NULL}));

  raw.item.changeID(node, nullptr);  // no list: nothing moves
  used = raw.item.useItems(node);
  EXPECT_EQ(used[0], A);

  // A→B then B→D: both A and B end at D in one call; C is untouched.
  const LWItemID chain[] = {A, B, B, D, LWITEM_NULL};
  raw.item.changeID(node, chain);
  used = raw.item.useItems(node);
  EXPECT_EQ(std::vector<LWItemID>(used, used + 4), (std::vector<LWItemID>{D, D, C, LWITEM_NULL}));
  raw.inst.destroy(node);

  LWInstance empty = raw.inst.create(nullptr, nullptr, &err);
  used = raw.item.useItems(empty);
  EXPECT_EQ(used[0], LWITEM_NULL);
  raw.inst.destroy(empty);
}

TEST_F(AdaptorTest, MasterActivationEventsAndGuards) {
  for (int version : {3, 5}) {
    RawMasterHandler raw;
    EXPECT_EQ(raw.activate(module, "fixtureMaster", version), AFUNC_BADVERSION);
    EXPECT_EQ(raw.handler.event, nullptr);
  }
  RawMasterHandler raw;
  raw.handler.type = -1;
  ASSERT_EQ(raw.activate(module, "fixtureMaster", 4), AFUNC_OK);
  EXPECT_EQ(raw.handler.type, LWMAST_LAYOUT);
  LWError err = nullptr;
  LWInstance master = raw.inst.create(nullptr, nullptr, &err);
  ASSERT_NE(master, nullptr);

  // Events, their guard and the flags of a sound instance are seen through Layout sessions.
  LWMasterAccess access{};
  access.eventCode = LWEVNT_COMMAND;
  access.eventData = const_cast<char*>("throw");
  EXPECT_EQ(raw.handler.event(master, &access), 0.0);
  expectOneError("An exception occured in MasterAdaptor::Event():", "event failed");
  EXPECT_EQ(raw.handler.flags(master), 0u);
  expectOneError("An exception occured in MasterAdaptor::Flags():", "flags failed");
  raw.inst.destroy(master);
}

}  // namespace
