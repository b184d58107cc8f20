#pragma once

#include "hostkit/XPanelNodeHandler.h"

namespace vorn {

// Splits a vector into its components while letting a scalar connection replace any of them:
// the vector rebuilt, and each of its components, as outputs. No settings, no panel.
class ChannelBlender : public hostkit::XPanelNodeHandler {
 public:
  ChannelBlender(void* priv, void* context, LWError* err);
  ChannelBlender& operator=(const ChannelBlender&) { return *this; }  // nothing of its own to copy

  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override;

 private:
  hostkit::LWNodeOutput* vectorOut_;
  hostkit::LWNodeOutput* componentOut_[3];
  hostkit::LWNodeInput* vectorIn_;
  hostkit::LWNodeInput* componentIn_[3];
};

}  // namespace vorn
