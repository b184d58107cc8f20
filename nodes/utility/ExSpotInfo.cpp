#include "nodes/utility/ExSpotInfo.h"

#include "hostkit/Logo.h"

namespace vorn {

namespace {
LWXPanelControl controls[] = {hostkit::kLogoControl, hostkit::kWebButtonControl, {0, nullptr, nullptr}};
LWXPanelDataDesc data[] = {{0, nullptr, nullptr}};
}  // namespace

ExSpotInfo::ExSpotInfo(void*, void* context, LWError*) : XPanelNodeHandler(context) {
  objectOut_ = addOutput(NOT_INTEGER, "Object ID");
  sourceOut_ = addOutput(NOT_INTEGER, "Ray Source ID");
  polygonOut_ = addOutput(NOT_INTEGER, "Polygon Number");
  setColour(11, 8, 51);
}

// Item ids are pointer sized but carry 32 bits, so they fit the integer outputs unchanged.
void ExSpotInfo::Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) {
  if (objectOut_->is(output))
    objectOut_->setValue(value, LWITEMID2INT(access->objID));
  else if (sourceOut_->is(output))
    sourceOut_->setValue(value, LWITEMID2INT(access->sourceID));
  else if (polygonOut_->is(output))
    polygonOut_->setValue(value, access->polNum);
}

int ExSpotInfo::Interface(int, LWInterface* local, void*) {
  if (!panel) CreateViewXPanel(controls, data, hostkit::LogoHints(), false);
  local->panel = panel;
  return 0;
}

}  // namespace vorn
