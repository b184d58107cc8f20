#include "nodes/utility/ChannelBlender.h"

namespace vorn {

namespace {
const char* const kComponents[3] = {"X", "Y", "Z"};
}  // namespace

ChannelBlender::ChannelBlender(void*, void* context, LWError*) : XPanelNodeHandler(context) {
  vectorOut_ = addOutput(NOT_VECTOR, "Vector");
  for (int i = 0; i < 3; ++i) componentOut_[i] = addOutput(NOT_SCALAR, kComponents[i]);
  vectorIn_ = addInput(NOT_VECTOR, "Vector");
  for (int i = 0; i < 3; ++i) componentIn_[i] = addInput(NOT_SCALAR, kComponents[i]);
  setColour(11, 8, 51);
}

// Every input is read whichever output is asked, so upstream nodes see the same requests for
// each of the four outputs.
void ChannelBlender::Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) {
  double v[3] = {0.0, 0.0, 0.0};
  vectorIn_->evaluate(access, v);
  for (int i = 0; i < 3; ++i) componentIn_[i]->evaluate(access, &v[i]);

  if (vectorOut_->is(output)) {
    vectorOut_->setValue(value, static_cast<void*>(v));
    return;
  }
  for (int i = 0; i < 3; ++i)
    if (componentOut_[i]->is(output)) componentOut_[i]->setValue(value, v[i]);
}

}  // namespace vorn
