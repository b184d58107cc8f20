#include "nodes/materials/MaterialComponent.h"

#include "hostkit/LoadState.h"
#include "hostkit/SaveState.h"

namespace vorn {

namespace {
const LWBlockIdent kBlocks[] = {{LWID_('M', 'O', 'D', 'E'), "Mode"}, {LWID_('O', 'P', 'A', 'C'), "Opacity"}, {0, nullptr}};
const LWBlockIdent& kMode = kBlocks[0];
const LWBlockIdent& kOpacity = kBlocks[1];
}  // namespace

MaterialComponent& MaterialComponent::operator=(const MaterialComponent& other) {
  if (this == &other) return *this;
  if (opacity && other.opacity) *opacity = *other.opacity;
  mode = other.mode;
  return *this;
}

void MaterialComponent::Initialize(hostkit::NodeHandler& node, const std::string& channel) {
  opacityInput = node.addInput(NOT_SCALAR, (channel + " Opacity").c_str());
  modeInput = node.addInput(NOT_INTEGER, (channel + " Mode").c_str());
  opacity = std::make_unique<hostkit::VParm>(LWVP_PERCENT, channel + "Opacity", "MaterialBlender",
                                             node.channelGroup(), 0.0);
}

void* MaterialComponent::OpacityGet() const { return opacityInput->connected() ? nullptr : opacity->id; }

void* MaterialComponent::ModeGet() { return modeInput->connected() ? nullptr : &mode; }

void MaterialComponent::NewTime(LWFrame, LWTime time) { opacity->Sample(time); }

LWError MaterialComponent::Load(const hostkit::LoadState& state) {
  while (LWID id = state.findBlock(kBlocks)) {
    if (id == kMode.id)
      state.readI4(&mode);
    else if (id == kOpacity.id)
      state.read(*opacity);
    state.endBlock();
  }
  return nullptr;
}

LWError MaterialComponent::Save(const hostkit::SaveState& state) {
  state.beginBlock(kMode, true);
  state.writeI4(&mode);
  state.endBlock();
  state.WriteItem(kOpacity, *opacity, false);
  return nullptr;
}

}  // namespace vorn
