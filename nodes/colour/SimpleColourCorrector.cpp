#include "nodes/colour/SimpleColourCorrector.h"

#include "hostkit/LoadState.h"
#include "hostkit/SaveState.h"
#include "hostkit/XPanelFuncs.h"

namespace vorn {

namespace {

const LWBlockIdent kBlocks[] = {{LWID_('C', 'B', 'R', 'T'), "Brightness"}, {LWID_('C', 'C', 'N', 'T'), "Contrast"},
                                {LWID_('C', 'H', 'U', 'E'), "Hue"},        {LWID_('C', 'S', 'A', 'T'), "Saturation"},
                                {LWID_('C', 'G', 'A', 'M'), "Gamma"},      {LWID_('C', 'I', 'N', 'V'), "Invert"},
                                {0, nullptr}};
const LWBlockIdent& kInvert = kBlocks[5];

struct Setting {
  std::unique_ptr<hostkit::VParm> SimpleColourCorrector::*member;
  const char* name;
  int type;
  double neutral;
};

const Setting kSettings[] = {
    {&SimpleColourCorrector::Brightness, "Brightness", LWVP_PERCENT, 1.0},
    {&SimpleColourCorrector::Contrast, "Contrast", LWVP_PERCENT, 1.0},
    {&SimpleColourCorrector::Hue, "Hue", LWVP_ANGLE, 0.0},
    {&SimpleColourCorrector::Saturation, "Saturation", LWVP_PERCENT, 1.0},
    {&SimpleColourCorrector::Gamma, "Gamma", LWVP_FLOAT, 1.0},
};
constexpr int kSettingCount = 5;

// Panel ids of the five settings follow the node's two fallback values.
constexpr unsigned int kFirstSettingId = 0x9002;
constexpr unsigned int kInvertId = 0x9007;
constexpr unsigned int kDefaultButtonId = 0x9008;

}  // namespace

SimpleColourCorrector::SimpleColourCorrector(void* parent, const char* pluginName, bool ownGroup) {
  group = ownGroup ? std::make_unique<hostkit::ChannelGroup>(parent, "SimpleColourCorrection")
                   : std::make_unique<hostkit::ChannelGroup>(parent);
  for (const Setting& s : kSettings)
    this->*s.member = std::make_unique<hostkit::VParm>(s.type, s.name, pluginName, group->id, s.neutral);
}

SimpleColourCorrector& SimpleColourCorrector::operator=(const SimpleColourCorrector& other) {
  if (this == &other) return *this;
  for (const Setting& s : kSettings) *(this->*s.member) = *(other.*s.member);
  invert = other.invert;
  gammaActive = other.gammaActive;
  needsColourWork = other.needsColourWork;
  return *this;
}

void SimpleColourCorrector::NewTime(double time) {
  for (const Setting& s : kSettings) (this->*s.member)->Sample(time);
  dirty = true;
  PreCalculate();
}

void SimpleColourCorrector::PreCalculate() {
  needsColourWork = !(Brightness->value[0] == 1.0 && Contrast->value[0] == 1.0 && Hue->value[0] == 0.0 &&
                      Saturation->value[0] == 1.0);
  gammaActive = Gamma->value[0] != 1.0;
  inverseGamma = 1.0f / static_cast<float>(Gamma->value[0]);
}

void* SimpleColourCorrector::DataGet(unsigned int id) {
  if (id >= kFirstSettingId && id < kFirstSettingId + kSettingCount)
    return (this->*kSettings[id - kFirstSettingId].member)->id;
  if (id == kInvertId) {
    // The panel reads the value at once; a shared integer is enough on the interface thread.
    static int shown;
    shown = invert ? 1 : 0;
    return &shown;
  }
  return nullptr;
}

int SimpleColourCorrector::DataSet(unsigned int id, void* value) {
  if (id == kInvertId && value) invert = *static_cast<int*>(value) != 0;
  dirty = true;
  return 1;
}

void SimpleColourCorrector::Defaults() {
  for (const Setting& s : kSettings) {
    hostkit::VParm& p = *(this->*s.member);
    p.SetState(0);
    p.Set(s.neutral);
  }
  dirty = true;
}

void SimpleColourCorrector::ClickDefaults(LWXPanelID panel, int) {
  hostkit::XPanel held(panel);
  auto* corrector = static_cast<SimpleColourCorrector*>(held.getData(kDefaultButtonId));
  if (!corrector) return;
  corrector->Defaults();
  held.refresh();
}

LWError SimpleColourCorrector::Load(const hostkit::LoadState& state) {
  LWError result = nullptr;
  while (LWID id = state.findBlock(kBlocks)) {
    for (int k = 0; k < kSettingCount; ++k)
      if (id == kBlocks[k].id) result = state.read(*(this->*kSettings[k].member));
    if (id == kInvert.id) {
      unsigned char byte = 0;
      if (state.readU1(&byte) == 1 && byte == 1) invert = true;
    }
    state.endBlock();
  }
  dirty = true;
  return result;
}

LWError SimpleColourCorrector::Save(const hostkit::SaveState& state) {
  for (int k = 0; k < kSettingCount; ++k) state.WriteItem(kBlocks[k], *(this->*kSettings[k].member), false);
  unsigned char byte = invert ? 1 : 0;
  state.beginBlock(kInvert, true);
  state.writeU1(&byte);
  state.endBlock();
  return nullptr;
}

}  // namespace vorn
