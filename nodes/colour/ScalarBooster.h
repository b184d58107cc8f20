#pragma once

#include "nodes/colour/SingleChannelBooster.h"

namespace vorn {

// The Scalar Booster: scales a number.
class ScalarBooster : public SingleChannelBooster {
 public:
  ScalarBooster(void* priv, void* context, LWError* err);

  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override;
};

}  // namespace vorn
