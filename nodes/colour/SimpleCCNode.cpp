#include "nodes/colour/SimpleCCNode.h"

#include "hostkit/LoadState.h"
#include "hostkit/Logo.h"
#include "hostkit/SaveState.h"
#include "nodes/colour/ColourCorrection.h"

namespace vorn {

namespace {

constexpr char kPlugin[] = "SimpleColourCorrector";

enum Input { kColour, kScalar, kBrightness, kContrast, kHue, kSaturation, kGamma, kInvert, kInputCount };
// Control ids run in input order from 0x9000; the "Default" button follows them.
constexpr unsigned int kDefaultButton = 0x9008;

const LWBlockIdent kBlocks[] = {{LWID_('V', 'E', 'R', 'S'), "Version"},
                                {LWID_('I', 'C', 'O', 'L'), "InColour"},
                                {LWID_('I', 'S', 'C', 'L'), "InScala"},
                                {LWID_('S', 'I', 'C', 'C'), "SimpleColourCorrection"},
                                {0, nullptr}};
const LWBlockIdent& kVersion = kBlocks[0];
const LWBlockIdent& kInColour = kBlocks[1];
const LWBlockIdent& kInScalar = kBlocks[2];
const LWBlockIdent& kCorrection = kBlocks[3];

LWXPanelControl controls[] = {hostkit::kLogoControl,
                              hostkit::kWebButtonControl,
                              {0x9000, "Colour", "color-env"},
                              {0x9001, "Scalar", "float-env"},
                              {0x9002, "Brightness", "percent-env"},
                              {0x9003, "Contrast", "percent-env"},
                              {0x9004, "Hue", "angle-env"},
                              {0x9005, "Saturation", "percent-env"},
                              {0x9006, "Gamma", "float-env"},
                              {0x9007, "Invert", "iBoolean"},
                              {kDefaultButton, "Default", "vButton"},
                              {0, nullptr, nullptr}};

LWXPanelDataDesc data[] = {{0x9000, "", "float3-env"}, {0x9001, "", "float-env"}, {0x9002, "", "float-env"},
                           {0x9003, "", "float-env"},  {0x9004, "", "float-env"}, {0x9005, "", "float-env"},
                           {0x9006, "", "float-env"},  {0x9007, "", "integer"},   {0, nullptr, nullptr}};

LWXPanelHint* Hints() {
  static LWXPanelHint hints[] = {XpBUTNOTIFY(hostkit::HintWord(kDefaultButton), SimpleColourCorrector::ClickDefaults),
                                 XpDIVADD(hostkit::HintWord(0x9001)),
                                 XpCALL(hostkit::LogoHints()),
                                 XpDIVADD(hostkit::HintWord(kDefaultButton)),
                                 XpEND};
  return hints;
}

}  // namespace

SimpleCCNode::SimpleCCNode(void*, void* context, LWError*)
    : XPanelNodeHandler(context),
      Colour(LWVP_COLOR, "Colour", kPlugin, channelGroup(), hostkit::Vector3<double>(0.0, 0.0, 0.0)),
      Scalar(LWVP_FLOAT, "Scalar", kPlugin, channelGroup(), 0.0) {
  inputs_[kColour] = addColourInput("Colour");
  inputs_[kScalar] = addInput(NOT_SCALAR, "Scalar");
  inputs_[kBrightness] = addInput(NOT_SCALAR, "Brightness");
  inputs_[kContrast] = addInput(NOT_SCALAR, "Contrast");
  inputs_[kHue] = addInput(NOT_SCALAR, "Hue");
  inputs_[kSaturation] = addInput(NOT_SCALAR, "Saturation");
  inputs_[kGamma] = addInput(NOT_SCALAR, "Gamma");
  inputs_[kInvert] = addInput(NOT_INTEGER, "Invert");
  colourOut_ = addOutput(NOT_COLOR, "Colour");
  scalarOut_ = addOutput(NOT_SCALAR, "Scalar");
  corrector = std::make_unique<SimpleColourCorrector>(channelGroup(), kPlugin, false);
  setColour(11, 8, 51);
}

SimpleCCNode& SimpleCCNode::operator=(const SimpleCCNode& other) {
  if (this == &other) return *this;
  Colour = other.Colour;
  Scalar = other.Scalar;
  *corrector = *other.corrector;
  return *this;
}

LWError SimpleCCNode::NewTime(LWFrame frame, LWTime time) {
  corrector->NewTime(time);
  Colour.Sample(time);
  Scalar.Sample(time);
  return RenderHandler::NewTime(frame, time);
}

void SimpleCCNode::Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) noexcept {
  const SimpleColourCorrector& cc = *corrector;
  CorrectionSettings s;
  s.contrast = cc.Contrast->value[0];
  s.brightness = cc.Brightness->value[0];
  s.hue = cc.Hue->value[0];
  s.saturation = cc.Saturation->value[0];
  s.gamma = cc.Gamma->value[0];
  s.invert = cc.invert ? 1 : 0;
  inputs_[kContrast]->evaluate(access, &s.contrast);
  inputs_[kBrightness]->evaluate(access, &s.brightness);
  inputs_[kHue]->evaluate(access, &s.hue);
  inputs_[kSaturation]->evaluate(access, &s.saturation);
  inputs_[kGamma]->evaluate(access, &s.gamma);
  inputs_[kInvert]->evaluate(access, &s.invert);

  if (colourOut_->is(output)) {
    double colour[3] = {Colour.value[0], Colour.value[1], Colour.value[2]};
    inputs_[kColour]->evaluate(access, colour);
    CorrectColour(colour, s);
    colourOut_->setValue(value, static_cast<void*>(colour));
  } else if (scalarOut_->is(output)) {
    double x = Scalar.value[0];
    inputs_[kScalar]->evaluate(access, &x);
    scalarOut_->setValue(value, CorrectScalar(x, s));
  }
}

void* SimpleCCNode::DataGet(unsigned int id) {
  if (id >= 0x9000 && id < 0x9000 + kInputCount && inputs_[id - 0x9000]->connected()) return nullptr;
  if (id == 0x9000) return Colour.id;
  if (id == 0x9001) return Scalar.id;
  return corrector->DataGet(id);
}

int SimpleCCNode::DataSet(unsigned int id, void* value) { return corrector->DataSet(id, value); }

int SimpleCCNode::Interface(int, LWInterface* local, void*) {
  if (!panel) {
    CreateViewXPanel(controls, data, Hints(), false);
    if (panel) xpanelFuncs.getGlobal()->setData(panel, kDefaultButton, corrector.get());
  }
  local->panel = panel;
  return 0;
}

LWError SimpleCCNode::Load(const hostkit::LoadState& state) {
  while (LWID id = state.findBlock(kBlocks)) {
    if (id == kVersion.id) {
      short version = 0;
      state.readI2(&version);
    } else if (id == kInColour.id) {
      state.read(Colour);
    } else if (id == kInScalar.id) {
      state.read(Scalar);
    } else if (id == kCorrection.id) {
      state.read(*corrector);
    }
    state.endBlock();
  }
  return nullptr;
}

LWError SimpleCCNode::Save(const hostkit::SaveState& state) {
  short version = 1;
  state.beginBlock(kVersion, true);
  state.writeI2(&version);
  state.endBlock();
  state.WriteItem(kInColour, Colour, false);
  state.WriteItem(kInScalar, Scalar, false);
  state.WriteItem(kCorrection, *corrector, false);
  return nullptr;
}

}  // namespace vorn
