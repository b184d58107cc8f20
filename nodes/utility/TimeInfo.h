#pragma once

#include "hostkit/XPanelNodeHandler.h"

namespace vorn {

// A node without inputs that gives the scene's current time, frame and frame rate.
class TimeInfo : public hostkit::XPanelNodeHandler {
 public:
  TimeInfo(void* priv, void* context, LWError* err);
  TimeInfo& operator=(const TimeInfo& other);

  LWError NewTime(LWFrame frame, LWTime time) override;
  // Inline and noexcept, so that the host's call lands here straight from the adaptor.
  void Evaluate(LWNodalAccess*, NodeOutputID output, NodeValue value) noexcept override {
    if (output == timeId_)
      timeOut_->setValue(value, &now_);
    else if (output == frameId_)
      frameOut_->setValue(value, &frameNumber_);
    else if (output == fpsId_)
      fpsOut_->setValue(value, &fps);
  }
  int Interface(int version, LWInterface* local, void* serverData) override;

  double fps = 24.0;

 private:
  // Copies of the render time and frame: the sample reads these, not the virtual base's.
  double now_ = 0.0;
  int frameNumber_ = 0;
  NodeOutputID timeId_, frameId_, fpsId_;  // the outputs' ids, compared without a load
  hostkit::LWNodeOutput* timeOut_;
  hostkit::LWNodeOutput* frameOut_;
  hostkit::LWNodeOutput* fpsOut_;
};

}  // namespace vorn
