#include "nodes/colour/ScalarBooster.h"

namespace vorn {

namespace {
const LWBlockIdent kBlocks[] = {{LWID_('C', 'A', 'M', 'O'), "CameraOnly"}, {LWID_('S', 'C', 'L', 'R'), "Scalar"}, {0, nullptr}};
}  // namespace

// Keeps the host's default node colour, unlike the module's other nodes.
ScalarBooster::ScalarBooster(void*, void* context, LWError*)
    : SingleChannelBooster(context, NOT_SCALAR, "Scalar", kBlocks) {}

// An unconnected input gives 0.
void ScalarBooster::Evaluate(LWNodalAccess* access, NodeOutputID, NodeValue value) {
  double x = 0.0;
  input_->evaluate(access, &x);
  if (camera.boosts(access)) channel.evaluate(access, x);
  output_->setValue(value, x);
}

}  // namespace vorn
