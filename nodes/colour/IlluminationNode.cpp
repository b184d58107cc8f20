#include "nodes/colour/IlluminationNode.h"

#include <algorithm>
#include <memory>

#include "hostkit/HostVersion.h"
#include "hostkit/LoadState.h"
#include "hostkit/Logo.h"
#include "hostkit/SaveState.h"

namespace vorn {

namespace {

constexpr unsigned int kLightControl = hostkit::kFirstControl;

const LWBlockIdent kBlocks[] = {{LWID_('L', 'I', 'G', 'T'), "Light"}, {0, nullptr}};
const LWBlockIdent& kLightBlock = kBlocks[0];

LWXPanelControl controls[] = {hostkit::kLogoControl,
                              hostkit::kWebButtonControl,
                              {kLightControl, "Light", "iPopChoice"},
                              {0, nullptr, nullptr}};
LWXPanelDataDesc data[] = {{kLightControl, "Light", "integer"}, {0, nullptr, nullptr}};

LWXPanelHint* Hints() {
  static LWXPanelHint hints[] = {XpCALL(hostkit::LogoHints()),
                                 XpPOPFUNCS(hostkit::HintWord(kLightControl), hostkit::PopUpCallback::PopCount,
                                            hostkit::PopUpCallback::PopName),
                                 XpEND};
  return hints;
}

}  // namespace

IlluminationNode::IlluminationNode(void*, void* context, LWError* err) : XPanelNodeHandler(context) {
  if (!hostkit::RequireHost92(err)) return;
  colourOut_ = addOutput(NOT_COLOR, "Colour");
  litOut_ = addOutput(NOT_INTEGER, "isLit");
  // Listed so that the choice follows the scene when it renumbers its lights.
  items.push_back(&light_.item);
  setColour(11, 8, 51);
}

IlluminationNode& IlluminationNode::operator=(const IlluminationNode& other) {
  light_.index = other.light_.index;
  light_.item = other.light_.item;
  light_.withNone = other.light_.withNone;
  return *this;
}

void IlluminationNode::Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) {
  const LWItemID light = light_.item.id;
  if (!light || !access->illuminate) return;

  double colour[3] = {0.0, 0.0, 0.0};
  double direction[3] = {0.0, 0.0, 0.0};  // the host fills it from the light towards the spot
  const int lit = access->illuminate(light, access->wPos, direction, colour);

  if (colourOut_->is(output)) {
    const double* n = access->wNorm;
    const double cosine = std::clamp(-(n[0] * direction[0] + n[1] * direction[1] + n[2] * direction[2]), 0.0, 1.0);
    // An unlit spot keeps whatever the requester had, so that networks can fall back on it.
    if (!lit) return;
    for (double& c : colour) c *= cosine;
    colourOut_->setValue(value, static_cast<void*>(colour));
  } else if (litOut_->is(output)) {
    litOut_->setValue(value, lit);
  }
}

void* IlluminationNode::DataGet(unsigned int id) {
  if (id != kLightControl) return nullptr;
  // The light may have moved in the scene's order since it was chosen; a vanished one is -1,
  // which shows as "(none)".
  light_.index = light_.item.info.FindIndex(light_.item.id, LWI_LIGHT) + 1;
  return &light_.index;
}

int IlluminationNode::DataSet(unsigned int id, void* value) {
  if (id != kLightControl || !value) return 1;
  light_.index = *static_cast<int*>(value);
  if (light_.index == 0) {
    light_.item.id = LWITEM_NULL;
  } else if (std::unique_ptr<hostkit::LWItem> chosen{light_.item.info.GetItemN(light_.index - 1, LWI_LIGHT)}) {
    light_.item.id = chosen->id;
  }
  return 1;
}

int IlluminationNode::Interface(int, LWInterface* local, void*) {
  if (!panel) {
    CreateViewXPanel(controls, data, Hints(), false);
    if (panel) xpanelFuncs.getGlobal()->setData(panel, kLightControl, static_cast<hostkit::PopUpCallback*>(&light_));
  }
  local->panel = panel;
  return 0;
}

LWError IlluminationNode::Load(const hostkit::LoadState& state) {
  while (LWID id = state.findBlock(kBlocks)) {
    if (id == kLightBlock.id) state.read(light_.item);
    state.endBlock();
  }
  return nullptr;
}

LWError IlluminationNode::Save(const hostkit::SaveState& state) {
  state.WriteItem(kLightBlock, light_.item, false);
  return nullptr;
}

}  // namespace vorn
