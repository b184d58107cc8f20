#pragma once

#include <lwnodes.h>

#include <memory>

#include "hostkit/VParm.h"
#include "hostkit/XPanelNodeHandler.h"
#include "nodes/colour/SimpleColourCorrector.h"

namespace vorn {

// The Simple Colour Corrector node: the corrector applied per spot to a colour (and, reduced, to
// a scalar), every setting overridable by a connected input.
class SimpleCCNode : public hostkit::XPanelNodeHandler {
 public:
  SimpleCCNode(void* priv, void* context, LWError* err);
  SimpleCCNode& operator=(const SimpleCCNode& other);

  LWError NewTime(LWFrame frame, LWTime time) override;
  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) noexcept override;

  void* DataGet(unsigned int id) override;
  int DataSet(unsigned int id, void* value) override;
  int Interface(int version, LWInterface* local, void* serverData) override;

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  hostkit::VParm Colour;
  hostkit::VParm Scalar;
  std::unique_ptr<SimpleColourCorrector> corrector;

 private:
  // In panel order: Colour, Scalar, Brightness, Contrast, Hue, Saturation, Gamma, Invert.
  hostkit::LWNodeInput* inputs_[8] = {};
  hostkit::LWNodeOutput* colourOut_ = nullptr;
  hostkit::LWNodeOutput* scalarOut_ = nullptr;
};

}  // namespace vorn
