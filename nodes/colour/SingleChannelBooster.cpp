#include "nodes/colour/SingleChannelBooster.h"

#include "hostkit/LoadState.h"
#include "hostkit/Logo.h"
#include "hostkit/SaveState.h"

namespace vorn {

namespace {

constexpr unsigned int kBoostId = 0x9000;
constexpr unsigned int kMaximumId = 0x9001;
constexpr unsigned int kCameraOnlyId = 0x9002;

LWXPanelControl controls[] = {hostkit::kLogoControl,
                              hostkit::kWebButtonControl,
                              {kBoostId, "Boost", "percent-env"},
                              {kMaximumId, "Maximum", "percent-env"},
                              {kCameraOnlyId, "Camera Rays Only", "iBoolean"},
                              {0, nullptr, nullptr}};

LWXPanelDataDesc data[] = {{kBoostId, "", "float-env"},
                           {kMaximumId, "", "float-env"},
                           {kCameraOnlyId, "", "integer"},
                           {0, nullptr, nullptr}};

LWXPanelHint* Hints() {
  static LWXPanelHint hints[] = {XpDIVADD(hostkit::HintWord(kMaximumId)), XpCALL(hostkit::LogoHints()), XpEND};
  return hints;
}

}  // namespace

SingleChannelBooster::SingleChannelBooster(void* context, ConnectionType type, const char* name,
                                           const LWBlockIdent* blocks)
    : XPanelNodeHandler(context), blocks_(blocks) {
  input_ = addInput(type, name);
  channel.Initialize(this, name);
  output_ = addOutput(type, name);
}

SingleChannelBooster& SingleChannelBooster::operator=(const SingleChannelBooster& other) {
  if (this == &other) return *this;
  channel = other.channel;
  camera = other.camera;
  return *this;
}

LWError SingleChannelBooster::NewTime(LWFrame frame, LWTime time) {
  channel.NewTime(frame, time);
  camera.NewTime(time);
  return RenderHandler::NewTime(frame, time);
}

void* SingleChannelBooster::DataGet(unsigned int id) {
  switch (id) {
    case kBoostId: return channel.BaseGet();
    case kMaximumId: return channel.MaxGet();
    case kCameraOnlyId: return camera.DataGet();
    default: return nullptr;
  }
}

int SingleChannelBooster::DataSet(unsigned int id, void* value) {
  if (id == kCameraOnlyId) camera.DataSet(value);
  return 1;
}

int SingleChannelBooster::Interface(int, LWInterface* local, void*) {
  if (!panel) CreateViewXPanel(controls, data, Hints(), false);
  local->panel = panel;
  return 0;
}

LWError SingleChannelBooster::Load(const hostkit::LoadState& state) {
  while (LWID id = state.findBlock(blocks_)) {
    if (id == blocks_[0].id)
      state.read(camera);
    else if (id == blocks_[1].id)
      state.read(channel);
    state.endBlock();
  }
  return nullptr;
}

// Unlike the Material Booster, these two write the camera setting first.
LWError SingleChannelBooster::Save(const hostkit::SaveState& state) {
  state.WriteItem(blocks_[0], camera, true);
  state.WriteItem(blocks_[1], channel, false);
  return nullptr;
}

}  // namespace vorn
