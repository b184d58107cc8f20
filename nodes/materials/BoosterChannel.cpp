#include "nodes/materials/BoosterChannel.h"

#include "hostkit/LoadState.h"
#include "hostkit/SaveState.h"

namespace vorn {

namespace {
const LWBlockIdent kBlocks[] = {{LWID_('B', 'A', 'S', 'E'), "Base"}, {LWID_('R', 'A', 'N', 'G'), "Range"}, {0, nullptr}};
const LWBlockIdent& kBase = kBlocks[0];
const LWBlockIdent& kRange = kBlocks[1];

// Every booster files its envelopes under the Material Booster's name; scenes depend on it.
constexpr char kPlugin[] = "MaterialBooster";
}  // namespace

BoosterChannel& BoosterChannel::operator=(const BoosterChannel& other) {
  if (this == &other) return *this;
  if (base && other.base) *base = *other.base;
  if (range && other.range) *range = *other.range;
  return *this;
}

void BoosterChannel::Initialize(hostkit::NodeHandler* node, const std::string& channel) {
  boostInput = node->addInput(NOT_SCALAR, (channel + " Boost").c_str());
  curveInput = node->addInput(NOT_SCALAR, (channel + " Curve").c_str());
  maxInput = node->addInput(NOT_SCALAR, (channel + " Maximum").c_str());
  base = std::make_unique<hostkit::VParm>(LWVP_PERCENT, channel + "Boost", kPlugin, node->channelGroup(), 1.0);
  range = std::make_unique<hostkit::VParm>(LWVP_PERCENT, channel + "Maximum", kPlugin, node->channelGroup(), 1.0);
}

// Without a curve the maximum plays no part, so its input is not even asked.
double BoosterChannel::factor(LWNodalAccess* access) const {
  double boost = base->value[0];
  boostInput->evaluate(access, &boost);
  if (!curveInput->connected()) return boost;
  double maximum = range->value[0];
  maxInput->evaluate(access, &maximum);
  double curve = 0.0;
  curveInput->evaluate(access, &curve);
  return (maximum - boost) * curve + boost;
}

void* BoosterChannel::MaxGet() const {
  return curveInput->connected() && !maxInput->connected() ? range->id : nullptr;
}

void BoosterChannel::NewTime(LWFrame, LWTime time) {
  base->Sample(time);
  range->Sample(time);
}

LWError BoosterChannel::Load(const hostkit::LoadState& state) {
  while (LWID id = state.findBlock(kBlocks)) {
    if (id == kBase.id)
      state.read(*base);
    else if (id == kRange.id)
      state.read(*range);
    state.endBlock();
  }
  return nullptr;
}

LWError BoosterChannel::Save(const hostkit::SaveState& state) {
  state.WriteItem(kBase, *base, false);
  state.WriteItem(kRange, *range, false);
  return nullptr;
}

}  // namespace vorn
