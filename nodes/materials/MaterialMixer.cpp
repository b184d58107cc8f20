#include "nodes/materials/MaterialMixer.h"

#include <cstddef>
#include <cstring>
#include <string>

#include "hostkit/HostVersion.h"
#include "hostkit/LoadState.h"
#include "hostkit/Logo.h"
#include "hostkit/SaveState.h"

namespace vorn {

namespace {

const char* const kChannelNames[MaterialMixer::kChannels] = {"Diffuse", "Specular", "Reflection", "Refraction",
                                                             "Transparency"};

// The popup lists the host's blending modes in the host's order.
const char* kBlendModes[] = {"Normal",   "Additive",   "Subtractive", "Multiply",     "Screen",
                             "Darken",   "Lighten",    "Difference",  "Negative",     "Colour Dodge",
                             "Colour Burn", "Red",     "Green",       "Blue",         nullptr};

const LWBlockIdent kBlocks[] = {{LWID_('C', 'D', 'I', 'F'), "Diffuse"},
                                {LWID_('C', 'S', 'P', 'C'), "Specular"},
                                {LWID_('C', 'R', 'F', 'L'), "Reflection"},
                                {LWID_('C', 'R', 'F', 'R'), "Refrection"},
                                {LWID_('C', 'T', 'R', 'N'), "Transparency"},
                                {0, nullptr}};

// Control ids: channel k's opacity is 0x9000 + 2k, its mode the odd id after it.
constexpr unsigned int OpacityId(int k) { return hostkit::kFirstControl + 2 * k; }
constexpr unsigned int ModeId(int k) { return hostkit::kFirstControl + 2 * k + 1; }

LWXPanelControl controls[] = {hostkit::kLogoControl,
                              hostkit::kWebButtonControl,
                              {ModeId(0), "Diffuse Mode", "iPopChoice"},
                              {OpacityId(0), "Diffuse Opacity", "percent-env"},
                              {ModeId(1), "Specular Mode", "iPopChoice"},
                              {OpacityId(1), "Specular Opacity", "percent-env"},
                              {ModeId(2), "Reflection Mode", "iPopChoice"},
                              {OpacityId(2), "Reflection Opacity", "percent-env"},
                              {ModeId(3), "Refraction Mode", "iPopChoice"},
                              {OpacityId(3), "Refraction Opacity", "percent-env"},
                              {ModeId(4), "Transparency Mode", "iPopChoice"},
                              {OpacityId(4), "Transparency Opacity", "percent-env"},
                              {0, nullptr, nullptr}};

LWXPanelDataDesc data[] = {{ModeId(0), "", "integer"}, {OpacityId(0), "", "float-env"},
                           {ModeId(1), "", "integer"}, {OpacityId(1), "", "float-env"},
                           {ModeId(2), "", "integer"}, {OpacityId(2), "", "float-env"},
                           {ModeId(3), "", "integer"}, {OpacityId(3), "", "float-env"},
                           {ModeId(4), "", "integer"}, {OpacityId(4), "", "float-env"},
                           {0, nullptr, nullptr}};

LWXPanelHint* Hints() {
  static LWXPanelHint hints[] = {XpSTRLIST(hostkit::HintWord(ModeId(0)), kBlendModes), XpSTRLIST(hostkit::HintWord(ModeId(1)), kBlendModes),
                                 XpSTRLIST(hostkit::HintWord(ModeId(2)), kBlendModes), XpSTRLIST(hostkit::HintWord(ModeId(3)), kBlendModes),
                                 XpSTRLIST(hostkit::HintWord(ModeId(4)), kBlendModes), XpCALL(hostkit::LogoHints()),
                                 XpEND};
  return hints;
}

// The four colours lie back to back in the record, so channel k is found without a branch.
static_assert(offsetof(LWNodalMaterial, specular) == offsetof(LWNodalMaterial, diffuse) + 3 * sizeof(double) &&
              offsetof(LWNodalMaterial, reflection) == offsetof(LWNodalMaterial, diffuse) + 6 * sizeof(double) &&
              offsetof(LWNodalMaterial, refraction) == offsetof(LWNodalMaterial, diffuse) + 9 * sizeof(double));
double* ColourChannel(LWNodalMaterial& m, int k) {
  return reinterpret_cast<double*>(reinterpret_cast<char*>(&m) + offsetof(LWNodalMaterial, diffuse)) + 3 * k;
}

constexpr int kTransparency = 4;

}  // namespace

MaterialMixer::MaterialMixer(void*, void* context, LWError* err) : XPanelNodeHandler(context) {
  if (!hostkit::RequireHost92(err)) return;

  bgMaterial_ = addInput(NOT_MATERIAL, "Bg Material");
  for (int k = 0; k < kTransparency; ++k) bgChannel_[k] = addColourInput(("Bg " + std::string(kChannelNames[k])).c_str());
  bgChannel_[kTransparency] = addInput(NOT_SCALAR, "Bg Transparency");
  fgMaterial_ = addInput(NOT_MATERIAL, "Fg Material");
  for (int k = 0; k < kTransparency; ++k) fgChannel_[k] = addColourInput(("Fg " + std::string(kChannelNames[k])).c_str());
  fgChannel_[kTransparency] = addInput(NOT_SCALAR, "Fg Transparency");

  materialOut_ = addOutput(NOT_MATERIAL, "Material");
  for (int k = 0; k < kTransparency; ++k) channelOut_[k] = addOutput(NOT_COLOR, kChannelNames[k]);
  channelOut_[kTransparency] = addOutput(NOT_SCALAR, "Transparency");

  for (int k = 0; k < kChannels; ++k) components[k].Initialize(*this, kChannelNames[k]);
  setColour(11, 8, 51);
}

MaterialMixer& MaterialMixer::operator=(const MaterialMixer& other) {
  if (this == &other) return *this;
  for (int k = 0; k < kChannels; ++k) components[k] = other.components[k];
  return *this;
}

bool MaterialMixer::anyUnconnected(const std::array<hostkit::LWNodeInput*, kChannels>& inputs) const {
  for (const hostkit::LWNodeInput* input : inputs)
    if (!input->connected()) return true;
  return false;
}

inline void MaterialMixer::blendChannel(int k, LWNodalAccess* access, LWNodalMaterial& bg, LWNodalMaterial& fg,
                                        LWNodalMaterial& result, double opacity) const noexcept {
  if (k == kTransparency)
    components[k].evaluate(access, bg.transparency, fg.transparency, bgChannel_[k], fgChannel_[k],
                           &result.transparency, opacity);
  else
    components[k].evaluate(access, ColourChannel(bg, k), ColourChannel(fg, k), bgChannel_[k], fgChannel_[k],
                           ColourChannel(result, k), opacity);
}

void MaterialMixer::Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) noexcept {
  LWNodalMaterial bg, fg, result;
  std::memset(&bg, 0, sizeof bg);
  std::memset(&fg, 0, sizeof fg);
  std::memset(&result, 0, sizeof result);

  if (materialOut_->is(output)) {
    double opacity[kChannels];
    for (int k = 0; k < kChannels; ++k) opacity[k] = components[k].getOpacity(access);

    // Opacities are fractions, so "below 100" holds for any usable value: the background is
    // nearly always needed. The comparison is kept as users' scenes were made with it.
    auto backgroundNeeded = [&] {
      for (int k = 0; k < kChannels; ++k)
        if (components[k].getMode(access) != Blend_Normal) return true;
      for (int k = 0; k < kChannels; ++k)
        if (opacity[k] < 100.0) return true;
      return false;
    };
    if (anyUnconnected(bgChannel_) && backgroundNeeded()) bgMaterial_->evaluate(access, &bg);

    auto foregroundShows = [&] {
      for (int k = 0; k < kChannels; ++k)
        if (opacity[k] > 0.0) return true;
      return false;
    };
    if (anyUnconnected(fgChannel_) && foregroundShows()) fgMaterial_->evaluate(access, &fg);

#if defined(__GNUC__)
#pragma GCC unroll 4  // per sample: channel k's fields become fixed offsets
#endif
    for (int k = 0; k < kTransparency; ++k)
      components[k].evaluate(access, ColourChannel(bg, k), ColourChannel(fg, k), bgChannel_[k], fgChannel_[k],
                             ColourChannel(result, k), opacity[k]);
    components[kTransparency].evaluate(access, bg.transparency, fg.transparency, bgChannel_[kTransparency],
                                       fgChannel_[kTransparency], &result.transparency, opacity[kTransparency]);
    materialOut_->setValue(value, &result);
    return;
  }

  for (int k = 0; k < kChannels; ++k) {
    if (!channelOut_[k]->is(output)) continue;
    const double opacity = components[k].getOpacity(access);
    if (!bgChannel_[k]->connected() && (components[k].getMode(access) != Blend_Normal || opacity < 100.0))
      bgMaterial_->evaluate(access, &bg);
    if (opacity > 0.0 && !fgChannel_[k]->connected()) fgMaterial_->evaluate(access, &fg);
    blendChannel(k, access, bg, fg, result, opacity);
    if (k == kTransparency)
      channelOut_[k]->setValue(value, result.transparency);
    else
      channelOut_[k]->setValue(value, static_cast<void*>(ColourChannel(result, k)));
    return;
  }
}

LWError MaterialMixer::NewTime(LWFrame frame, LWTime time) {
  for (MaterialComponent& c : components) c.NewTime(frame, time);
  return RenderHandler::NewTime(frame, time);
}

void* MaterialMixer::DataGet(unsigned int id) {
  for (int k = 0; k < kChannels; ++k) {
    if (id == OpacityId(k)) return components[k].OpacityGet();
    if (id == ModeId(k)) return components[k].ModeGet();
  }
  return nullptr;
}

int MaterialMixer::DataSet(unsigned int id, void* value) {
  for (int k = 0; k < kChannels; ++k)
    if (id == ModeId(k) && value) components[k].setMode(*static_cast<int*>(value));
  return 1;
}

int MaterialMixer::Interface(int, LWInterface* local, void*) {
  if (!panel) CreateViewXPanel(controls, data, Hints(), false);
  local->panel = panel;
  return 0;
}

LWError MaterialMixer::Load(const hostkit::LoadState& state) {
  while (LWID id = state.findBlock(kBlocks)) {
    for (int k = 0; k < kChannels; ++k)
      if (id == kBlocks[k].id) state.read(components[k]);
    state.endBlock();
  }
  return nullptr;
}

LWError MaterialMixer::Save(const hostkit::SaveState& state) {
  for (int k = 0; k < kChannels; ++k) state.WriteItem(kBlocks[k], components[k], false);
  return nullptr;
}

}  // namespace vorn
