#include "nodes/colour/ColourBooster.h"

namespace vorn {

namespace {
const LWBlockIdent kBlocks[] = {{LWID_('C', 'A', 'M', 'O'), "CameraOnly"}, {LWID_('C', 'O', 'L', 'R'), "Colour"}, {0, nullptr}};
}  // namespace

// Keeps the host's default node colour, unlike the module's other nodes.
ColourBooster::ColourBooster(void*, void* context, LWError*)
    : SingleChannelBooster(context, NOT_COLOR, "Colour", kBlocks) {}

void ColourBooster::Evaluate(LWNodalAccess* access, NodeOutputID, NodeValue value) {
  double colour[3] = {0.0, 0.0, 0.0};
  input_->evaluate(access, colour);
  if (camera.boosts(access)) channel.evaluate(access, colour);
  output_->setValue(value, static_cast<void*>(colour));
}

}  // namespace vorn
