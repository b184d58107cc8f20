#include "nodes/utility/TimeInfo.h"

#include "hostkit/LightWave.h"
#include "hostkit/Logo.h"
#include "hostkit/SceneInfo.h"

namespace vorn {

namespace {
LWXPanelControl controls[] = {hostkit::kLogoControl, hostkit::kWebButtonControl, {0, nullptr, nullptr}};
LWXPanelDataDesc data[] = {{0, nullptr, nullptr}};
}  // namespace

TimeInfo::TimeInfo(void*, void* context, LWError*) : XPanelNodeHandler(context) {
  timeOut_ = addOutput(NOT_SCALAR, "Time");
  frameOut_ = addOutput(NOT_INTEGER, "Frame");
  fpsOut_ = addOutput(NOT_SCALAR, "Frames per Second");
  timeId_ = timeOut_->output;
  frameId_ = frameOut_->output;
  fpsId_ = fpsOut_->output;
  setColour(11, 8, 51);
}

TimeInfo& TimeInfo::operator=(const TimeInfo& other) {
  time = now_ = other.now_;
  frame = frameNumber_ = other.frameNumber_;
  fps = other.fps;
  return *this;
}

LWError TimeInfo::NewTime(LWFrame f, LWTime t) {
  time = now_ = t;
  frame = frameNumber_ = f;
  if (!hostkit::LightWave::IsModeler()) {
    // Held only for this read: the scene's rate cannot change during a render pass.
    hostkit::SceneInfo scene;
    if (scene.available()) fps = scene.getGlobal()->framesPerSecond;
  }
  return nullptr;
}

int TimeInfo::Interface(int, LWInterface* local, void*) {
  if (!panel) CreateViewXPanel(controls, data, hostkit::LogoHints(), false);
  local->panel = panel;
  return 0;
}

}  // namespace vorn
