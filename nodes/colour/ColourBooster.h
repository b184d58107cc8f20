#pragma once

#include "nodes/colour/SingleChannelBooster.h"

namespace vorn {

// The Colour Booster: scales the three components of a colour by one factor.
class ColourBooster : public SingleChannelBooster {
 public:
  ColourBooster(void* priv, void* context, LWError* err);

  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override;
};

}  // namespace vorn
