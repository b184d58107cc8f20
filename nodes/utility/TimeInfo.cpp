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
  setColour(11, 8, 51);
}

TimeInfo& TimeInfo::operator=(const TimeInfo& other) {
  time = other.time;
  frame = other.frame;
  fps = other.fps;
  return *this;
}

LWError TimeInfo::NewTime(LWFrame f, LWTime t) {
  time = t;
  frame = f;
  if (!hostkit::LightWave::IsModeler()) {
    // Held only for this read: the scene's rate cannot change during a render pass.
    hostkit::SceneInfo scene;
    if (scene.available()) fps = scene.getGlobal()->framesPerSecond;
  }
  return nullptr;
}

void TimeInfo::Evaluate(LWNodalAccess*, NodeOutputID output, NodeValue value) {
  if (timeOut_->is(output))
    timeOut_->setValue(value, time);
  else if (frameOut_->is(output))
    frameOut_->setValue(value, frame);
  else if (fpsOut_->is(output))
    fpsOut_->setValue(value, fps);
}

int TimeInfo::Interface(int, LWInterface* local, void*) {
  if (!panel) CreateViewXPanel(controls, data, hostkit::LogoHints(), false);
  local->panel = panel;
  return 0;
}

}  // namespace vorn
