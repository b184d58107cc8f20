#pragma once

#include <lwnodes.h>

#include <memory>
#include <string>

#include "hostkit/LWNodeInput.h"
#include "hostkit/NodeHandler.h"
#include "hostkit/Storeable.h"
#include "hostkit/VParm.h"

namespace vorn {

// One boosted channel of a booster node: its boost, and the maximum a connected curve blends
// towards, each overridable by a connection.
class BoosterChannel : public hostkit::Storeable {
 public:
  BoosterChannel() = default;
  BoosterChannel(const BoosterChannel&) = delete;
  // Copies both parameters with their envelopes; connections stay with their node.
  BoosterChannel& operator=(const BoosterChannel& other);

  // Creates the boost, curve and maximum inputs on `node` (in that order), then the two
  // parameters.
  void Initialize(hostkit::NodeHandler* node, const std::string& channel);

  // Scales a number, or the three components of a colour, by the channel's factor.
  void evaluate(LWNodalAccess* access, double& value) const { value *= factor(access); }
  void evaluate(LWNodalAccess* access, double* colour) const {
    const double f = factor(access);
    colour[0] *= f;
    colour[1] *= f;
    colour[2] *= f;
  }

  // Panel values. The boost stays editable when its input is connected; the maximum shows only
  // while a curve uses it and no connection replaces it.
  void* BaseGet() const { return base->id; }
  void* MaxGet() const;

  void NewTime(LWFrame frame, LWTime time);

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  hostkit::LWNodeInput* boostInput = nullptr;
  hostkit::LWNodeInput* maxInput = nullptr;
  hostkit::LWNodeInput* curveInput = nullptr;
  std::unique_ptr<hostkit::VParm> base;
  std::unique_ptr<hostkit::VParm> range;

 private:
  double factor(LWNodalAccess* access) const;
};

}  // namespace vorn
