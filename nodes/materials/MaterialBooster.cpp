#include "nodes/materials/MaterialBooster.h"

#include <cstring>

#include "hostkit/HostVersion.h"
#include "hostkit/LoadState.h"
#include "hostkit/Logo.h"
#include "hostkit/SaveState.h"

namespace vorn {

namespace {

const char* const kChannelNames[MaterialBooster::kChannels] = {"Diffuse", "Specular", "Reflection", "Refraction",
                                                               "Transparency"};

// The channels in order, then the camera setting. "Refrection" is what scenes hold.
const LWBlockIdent kBlocks[] = {{LWID_('C', 'D', 'I', 'F'), "Diffuse"},
                                {LWID_('C', 'S', 'P', 'C'), "Specular"},
                                {LWID_('C', 'R', 'F', 'L'), "Reflection"},
                                {LWID_('C', 'R', 'F', 'R'), "Refrection"},
                                {LWID_('C', 'T', 'R', 'N'), "Transparency"},
                                {LWID_('C', 'A', 'M', 'O'), "CameraOnly"},
                                {0, nullptr}};
const LWBlockIdent& kCameraOnly = kBlocks[MaterialBooster::kChannels];

// Channel k's boost is 0x9000 + 2k, its maximum the odd id after it.
constexpr unsigned int BoostId(int k) { return hostkit::kFirstControl + 2 * k; }
constexpr unsigned int MaximumId(int k) { return BoostId(k) + 1; }
constexpr unsigned int kCameraOnlyId = BoostId(MaterialBooster::kChannels);

LWXPanelControl controls[] = {hostkit::kLogoControl,
                              hostkit::kWebButtonControl,
                              {BoostId(0), "Diffuse Boost", "percent-env"},
                              {MaximumId(0), "Diffuse Maximum", "percent-env"},
                              {BoostId(1), "Specular Boost", "percent-env"},
                              {MaximumId(1), "Specular Maximum", "percent-env"},
                              {BoostId(2), "Reflection Boost", "percent-env"},
                              {MaximumId(2), "Reflection Maximum", "percent-env"},
                              {BoostId(3), "Refraction Boost", "percent-env"},
                              {MaximumId(3), "Refraction Maximum", "percent-env"},
                              {BoostId(4), "Transparency Boost", "percent-env"},
                              {MaximumId(4), "Transparency Maximum", "percent-env"},
                              {kCameraOnlyId, "Camera Rays Only", "iBoolean"},
                              {0, nullptr, nullptr}};

LWXPanelDataDesc data[] = {{BoostId(0), "", "float-env"}, {MaximumId(0), "", "float-env"},
                           {BoostId(1), "", "float-env"}, {MaximumId(1), "", "float-env"},
                           {BoostId(2), "", "float-env"}, {MaximumId(2), "", "float-env"},
                           {BoostId(3), "", "float-env"}, {MaximumId(3), "", "float-env"},
                           {BoostId(4), "", "float-env"}, {MaximumId(4), "", "float-env"},
                           {kCameraOnlyId, "", "integer"}, {0, nullptr, nullptr}};

// A divider under each colour channel's pair; the transparency pair runs into the check box.
LWXPanelHint* Hints() {
  static LWXPanelHint hints[] = {XpDIVADD(hostkit::HintWord(MaximumId(0))), XpDIVADD(hostkit::HintWord(MaximumId(1))),
                                 XpDIVADD(hostkit::HintWord(MaximumId(2))), XpDIVADD(hostkit::HintWord(MaximumId(3))),
                                 XpCALL(hostkit::LogoHints()), XpEND};
  return hints;
}

}  // namespace

MaterialBooster::MaterialBooster(void*, void* context, LWError* err) : XPanelNodeHandler(context) {
  if (!hostkit::RequireHost92(err)) return;
  materialIn_ = addInput(NOT_MATERIAL, "Material");
  for (int k = 0; k < kChannels; ++k) channels[k].Initialize(this, kChannelNames[k]);
  materialOut_ = addOutput(NOT_MATERIAL, "Material");
  setColour(11, 8, 51);
}

MaterialBooster& MaterialBooster::operator=(const MaterialBooster& other) {
  if (this == &other) return *this;
  for (int k = 0; k < kChannels; ++k) channels[k] = other.channels[k];
  camera = other.camera;
  return *this;
}

void MaterialBooster::Evaluate(LWNodalAccess* access, NodeOutputID, NodeValue value) {
  LWNodalMaterial m;
  std::memset(&m, 0, sizeof m);
  materialIn_->evaluate(access, &m);
  if (camera.boosts(access)) {
    channels[0].evaluate(access, m.diffuse);
    channels[1].evaluate(access, m.specular);
    channels[2].evaluate(access, m.reflection);
    channels[3].evaluate(access, m.refraction);
    channels[4].evaluate(access, m.transparency);
  }
  materialOut_->setValue(value, static_cast<void*>(&m));
}

LWError MaterialBooster::NewTime(LWFrame frame, LWTime time) {
  for (BoosterChannel& c : channels) c.NewTime(frame, time);
  camera.NewTime(time);
  return RenderHandler::NewTime(frame, time);
}

void* MaterialBooster::DataGet(unsigned int id) {
  for (int k = 0; k < kChannels; ++k) {
    if (id == BoostId(k)) return channels[k].BaseGet();
    if (id == MaximumId(k)) return channels[k].MaxGet();
  }
  if (id == kCameraOnlyId) return camera.DataGet();
  return nullptr;
}

int MaterialBooster::DataSet(unsigned int id, void* value) {
  if (id == kCameraOnlyId) camera.DataSet(value);
  return 1;
}

int MaterialBooster::Interface(int, LWInterface* local, void*) {
  if (!panel) CreateViewXPanel(controls, data, Hints(), false);
  local->panel = panel;
  return 0;
}

LWError MaterialBooster::Load(const hostkit::LoadState& state) {
  while (LWID id = state.findBlock(kBlocks)) {
    for (int k = 0; k < kChannels; ++k)
      if (id == kBlocks[k].id) state.read(channels[k]);
    if (id == kCameraOnly.id) state.read(camera);
    state.endBlock();
  }
  return nullptr;
}

LWError MaterialBooster::Save(const hostkit::SaveState& state) {
  for (int k = 0; k < kChannels; ++k) state.WriteItem(kBlocks[k], channels[k], false);
  state.WriteItem(kCameraOnly, camera, true);
  return nullptr;
}

}  // namespace vorn
