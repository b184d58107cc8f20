#pragma once

#include "hostkit/XPanelNodeHandler.h"

namespace vorn {

// A node without inputs that identifies the spot being shaded: its object, the item the ray
// came from, and its polygon.
class ExSpotInfo : public hostkit::XPanelNodeHandler {
 public:
  ExSpotInfo(void* priv, void* context, LWError* err);
  ExSpotInfo& operator=(const ExSpotInfo&) { return *this; }  // nothing of its own to copy

  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override;
  int Interface(int version, LWInterface* local, void* serverData) override;

 private:
  hostkit::LWNodeOutput* objectOut_;
  hostkit::LWNodeOutput* sourceOut_;
  hostkit::LWNodeOutput* polygonOut_;
};

}  // namespace vorn
