// The server records of vorn.p against the module's registry table, and the class versions each
// record's activation accepts.
#include <gtest/gtest.h>

#include <lwhandler.h>
#include <lwmaster.h>
#include <lwnodes.h>

#include <string>
#include <utility>
#include <vector>

#include "lwhost/Session.h"
#include "support/ModulePaths.h"
#include "support/RawHandler.h"

namespace {

// One plug-in as the module must register it: handler record, then interface record.
struct Row {
  const char* handlerClass;
  const char* server;
  const char* userName;
  const char* nodeGroup;    // null: no node group tag
  const char* description;  // null: no description tag
  int minVersion, maxVersion;  // handler class versions accepted (nodes only)
};

constexpr const char* kNode = LWNODE_HCLASS;
constexpr const char* kNodeUI = LWNODE_ICLASS;
constexpr const char* kMaster = LWMASTER_HCLASS;
constexpr const char* kMasterUI = LWMASTER_ICLASS;

// The whole module, in registration order.
const Row kRegistry[] = {
    {kNode, "MaterialBlender", "Material Blender", "Vorn/Materials", nullptr, 1, 2},
    {kNode, "SimpleColourCorrector", "Simple Colour Corrector", "Vorn/Colour", "Simple Colour Corrector", 1, 1},
    {kMaster, "Growl", "Vorn Growl Notifier", nullptr, nullptr, 0, 0},
    {kMaster, "CommandStatistics", "Vorn Command Statistics", nullptr, nullptr, 0, 0},
    {kNode, "vornChannelBlender", "Channel Blender", "Vorn/Tools", nullptr, 1, 1},
    {kNode, "vornSingleLambertNode", "Single Light Lambert", "Vorn/Shading", nullptr, 1, 1},
    {kNode, "vornMaterialBooster", "Material Booster", "Vorn/Materials", nullptr, 1, 2},
    {kNode, "vornColourBooster", "Colour Booster", "Vorn/Colour", nullptr, 1, 2},
    {kNode, "vornScalarBooster", "Scalar Booster", "Vorn/Scalar", nullptr, 1, 2},
    {kNode, "vornCache", "Cache", "Vorn/Tools", nullptr, 1, 2},
    {kNode, "vornExSpotInfo", "Extended Spot Info", "Vorn/Spot", nullptr, 1, 2},
    {kNode, "vornTimeInfo", "Time Info", "Vorn/Additional", nullptr, 1, 2},
};
constexpr int kRows = sizeof kRegistry / sizeof kRegistry[0];

using Tags = std::vector<std::pair<std::string, unsigned int>>;

// Tags in the order the module must give them: user name, command group, node group,
// description, then an end mark of code 0.
Tags ExpectedTags(const Row& row) {
  Tags tags{{row.userName, SRVTAG_USERNAME}, {"Vorn Tools", SRVTAG_CMDGROUP}};
  if (row.nodeGroup) tags.emplace_back(row.nodeGroup, SRVTAG_NODEGROUP);
  if (row.description) tags.emplace_back(row.description, SRVTAG_DESCRIPTION);
  tags.emplace_back("<end>", 0);
  return tags;
}

// A record's tags up to the end mark (a null text), the end mark's code last.
Tags TagsOf(const ServerRecord& record) {
  Tags tags;
  const ServerTagInfo* t = record.tagInfo;
  for (; t && t->string; ++t) tags.emplace_back(t->string, t->tag);
  tags.emplace_back("<end>", t ? t->tag : 0xFFFFFFFFu);
  return tags;
}

class Registration : public ::testing::Test {
 protected:
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
};

TEST_F(Registration, RecordsFollowTheRegistryInPairs) {
  const std::vector<const ServerRecord*>& records = vorn.records();
  ASSERT_EQ(records.size(), 2u * kRows) << "every plug-in has a handler and an interface record";
  for (int row = 0; row < kRows; ++row) {
    const ServerRecord& handler = *records[2 * row];
    const ServerRecord& ui = *records[2 * row + 1];
    const Row& expected = kRegistry[row];
    SCOPED_TRACE(expected.server);
    EXPECT_STREQ(handler.name, expected.server);
    EXPECT_STREQ(ui.name, expected.server);
    EXPECT_STREQ(handler.className, expected.handlerClass);
    EXPECT_STREQ(ui.className, expected.handlerClass == kNode ? kNodeUI : kMasterUI);
    EXPECT_NE(handler.activate, ui.activate);
    EXPECT_EQ(handler.tagInfo, ui.tagInfo) << "both records share one tag array";
    EXPECT_EQ(TagsOf(handler), ExpectedTags(expected));
  }
}

TEST_F(Registration, NodeActivationsAcceptExactlyTheirClassVersions) {
  for (const Row& row : kRegistry) {
    if (row.handlerClass != kNode) continue;
    for (int version = 0; version <= 3; ++version) {
      SCOPED_TRACE(std::string(row.server) + " version " + std::to_string(version));
      const bool accepted = version >= row.minVersion && version <= row.maxVersion;
      RawNodeHandler raw;
      Poison(raw.inst);
      auto* const mark = reinterpret_cast<unsigned int (*)(LWInstance)>(0x1234);
      raw.handler.flags = mark;
      ASSERT_EQ(raw.activate(vorn, row.server, version), accepted ? AFUNC_OK : AFUNC_BADVERSION);
      if (!accepted) {
        EXPECT_TRUE(IsPoisoned(raw.inst)) << "a refused version fills nothing";
        EXPECT_EQ(raw.handler.evaluate, nullptr);
        continue;
      }
      EXPECT_EQ(raw.handler.flags == mark, version != 2) << "the flags entry exists only in the version 2 record";
    }

    // Interfaces count up from 1 and accept only the current interface version.
    const ServerRecord& ui = vorn.require(kNodeUI, row.server);
    for (int version = 1; version <= LWINTERFACE_VERSION; ++version)
      EXPECT_EQ(vorn.activate(ui, version, nullptr), version < LWINTERFACE_VERSION ? AFUNC_BADVERSION : AFUNC_OK)
          << row.server << " interface version " << version;
  }
}

}  // namespace
