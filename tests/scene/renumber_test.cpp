// Item id changes and who hears about them.
#include <vector>

#include "SceneTestSupport.h"

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using lwhost::IdChanges;

class RenumberTest : public SceneTest {
 protected:
  void SetUp() override {
    token = scene.addRenumberListener([this](const IdChanges& c) { heard.push_back(c); });
  }
  lwhost::ListenerToken token = 0;
  std::vector<IdChanges> heard;
};

TEST_F(RenumberTest, ChainsAreOrderedSoBothKindsOfClientAgree) {
  LWItemID a = scene.addObject("A");  // 10000000
  LWItemID b = scene.addObject("B");  // 10000001
  const LWItemID c = Id(0x10000002);

  // A takes B's id while B moves on to a new one. The pair leaving an id comes first, so
  // clients following chains (A->B then B->C gives C) and clients changing each id at most once
  // both end up right.
  IdChanges made = scene.renumber({{a, b}, {b, c}});
  EXPECT_THAT(made, ElementsAre(Pair(b, c), Pair(a, b)));
  EXPECT_THAT(heard, ElementsAre(made));
  EXPECT_EQ(scene.find("A"), b);
  EXPECT_EQ(scene.find("B"), c);
  EXPECT_THAT(walk(LWI_OBJECT), ElementsAre(b, c));  // order is untouched

  // A swap is carried out even though no order helps chain followers.
  EXPECT_EQ(scene.renumber({{b, c}, {c, b}}).size(), 2u);
  EXPECT_EQ(scene.find("A"), c);
  EXPECT_EQ(scene.find("B"), b);
}

TEST_F(RenumberTest, BonesFollowTheirObject) {
  LWItemID robot = scene.addObject("Robot");   // 10000000
  LWItemID hip = scene.addBone("Hip", robot);  // 40000000
  LWItemID knee = scene.addBone("Knee", hip);  // 40010000
  LWItemID key = scene.addLight("Key", knee);

  IdChanges made = scene.renumber({{robot, Id(0x10000005)}});
  EXPECT_THAT(made, ElementsAre(Pair(robot, Id(0x10000005)), Pair(hip, Id(0x40000005)),
                                Pair(knee, Id(0x40010005))));
  EXPECT_EQ(itemInfo()->parent(key), Id(0x40010005));
  EXPECT_EQ(itemInfo()->parent(Id(0x40010005)), Id(0x40000005));
  EXPECT_THAT(walk(LWI_BONE, Id(0x10000005)), ElementsAre(Id(0x40000005), Id(0x40010005)));

  // A bone's new id names its object by the object's current index, and moves with it.
  made = scene.renumber({{Id(0x10000005), Id(0x10000001)}, {Id(0x40010005), Id(0x40070005)}});
  EXPECT_THAT(made, ElementsAre(Pair(Id(0x10000005), Id(0x10000001)), Pair(Id(0x40000005), Id(0x40000001)),
                                Pair(Id(0x40010005), Id(0x40070001))));
  EXPECT_STREQ(itemInfo()->name(Id(0x40070001)), "Knee");
}

TEST_F(RenumberTest, CompactingAfterARemovalRenumbersLikeAReload) {
  LWItemID first = scene.addObject("First");
  LWItemID second = scene.addObject("Second");
  LWItemID third = scene.addObject("Third");
  LWItemID bone = scene.addBone("Bone", third);  // 40000002
  LWItemID cam = scene.addCamera("Cam");
  scene.select({third, cam});
  scene.remove(first);

  IdChanges made = scene.compactIds();
  EXPECT_THAT(made, ElementsAre(Pair(second, first), Pair(third, second), Pair(bone, Id(0x40000001))));
  EXPECT_THAT(heard, ElementsAre(made));
  // Everything the host hands out by id follows: selection, parents.
  auto* interfaceInfo = global<LWInterfaceInfo>("LW Interface Info 5");
  EXPECT_THAT(std::vector<LWItemID>(interfaceInfo->selItems, interfaceInfo->selItems + 3),
              ElementsAre(second, cam, LWITEM_NULL));
  EXPECT_EQ(itemInfo()->parent(Id(0x40000001)), second);

  // Nothing to do is no news.
  EXPECT_TRUE(scene.compactIds().empty());
  EXPECT_EQ(heard.size(), 1u);
}

TEST_F(RenumberTest, ImpossibleMovesAreRefusedWholesale) {
  LWItemID a = scene.addObject("A");
  LWItemID b = scene.addObject("B");
  LWItemID light = scene.addLight("L");
  LWItemID bone = scene.addBone("Bone", a);
  const IdChanges refused[] = {
      {{a, b}},                                    // b keeps its id
      {{a, Id(0x10000007)}, {b, Id(0x10000007)}},  // two items, one id
      {{a, Id(0x10000007)}, {a, Id(0x10000008)}},  // one item, two ids
      {{a, Id(0x20000005)}},                       // another type
      {{light, LWITEM_RADIOSITY}},                 // pseudo light
      {{a, Id(0x10010000)}},                       // beyond what a bone id can name
      {{bone, Id(0x40000001)}},                    // names another object
      {{Id(0x30000000), Id(0x30000001)}},          // no such item
  };
  for (const IdChanges& moves : refused)
    EXPECT_THROW(scene.renumber(moves), std::invalid_argument) << lwhost::itemid::ToString(moves[0].second);
  EXPECT_THROW(scene.notifyRenumbered({{a, LWITEM_NULL}}), std::invalid_argument);
  EXPECT_TRUE(heard.empty());
  EXPECT_EQ(scene.find("A"), a);
  EXPECT_EQ(scene.find("B"), b);
  EXPECT_EQ(scene.find("Bone"), bone);
}

TEST_F(RenumberTest, ListsReachListenersVerbatimAndRemovalMidNotificationIsSafe) {
  std::vector<int> calls;
  lwhost::ListenerToken second = 0, self = 0;
  scene.addRenumberListener([&](const IdChanges&) {
    calls.push_back(1);
    scene.removeRenumberListener(second);
  });
  second = scene.addRenumberListener([&](const IdChanges&) { calls.push_back(2); });
  self = scene.addRenumberListener([&](const IdChanges&) {
    calls.push_back(3);
    scene.removeRenumberListener(self);  // removing itself while running is safe
  });

  // A chain and a "data changed" pair go out as they are.
  const IdChanges chain = {{Id(0x10000000), Id(0x10000001)}, {Id(0x10000001), Id(0x10000002)},
                           {Id(0x10000002), Id(0x10000002)}};
  scene.notifyRenumbered(chain);
  scene.notifyRenumbered(chain);
  EXPECT_THAT(calls, ElementsAre(1, 3, 1));
  EXPECT_THAT(heard, ElementsAre(chain, chain));  // the fixture's listener was called both times
  EXPECT_TRUE(scene.removeRenumberListener(token));
  EXPECT_FALSE(scene.removeRenumberListener(token));
  scene.notifyRenumbered(chain);
  EXPECT_EQ(heard.size(), 2u);
}

}  // namespace
