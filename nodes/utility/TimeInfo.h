#pragma once

#include "hostkit/XPanelNodeHandler.h"

namespace vorn {

// A node without inputs that gives the scene's current time, frame and frame rate.
class TimeInfo : public hostkit::XPanelNodeHandler {
 public:
  TimeInfo(void* priv, void* context, LWError* err);
  TimeInfo& operator=(const TimeInfo& other);

  LWError NewTime(LWFrame frame, LWTime time) override;
  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override;
  int Interface(int version, LWInterface* local, void* serverData) override;

  double fps = 24.0;

 private:
  hostkit::LWNodeOutput* timeOut_;
  hostkit::LWNodeOutput* frameOut_;
  hostkit::LWNodeOutput* fpsOut_;
};

}  // namespace vorn
