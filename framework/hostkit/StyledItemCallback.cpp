#include "hostkit/StyledItemCallback.h"

#include "hostkit/InterfaceInfo.h"
#include "hostkit/LightWave.h"

namespace hostkit {

namespace {
// The host's pop-up text codes: 0x03 "(g:n)" is a gap of n pixels, 0x03 "(i:icon, colour)" an icon.
const char* IconCode(LWItemType type) {
  switch (type) {
    case LWI_LIGHT: return "159";
    case LWI_CAMERA: return "162";
    case LWI_BONE: return "161";
    default: return "160";
  }
}
}  // namespace

void StyledItemCallback::buildItemList() {
  entries.clear();
  for (LWItemType root : {LWI_OBJECT, LWI_LIGHT, LWI_CAMERA})
    for (LWItemID it = info_.First(root); it; it = info_.Next(it))
      if (!info_.Parent(it)) addChildren(it, 0, type);
}

void StyledItemCallback::addChildren(LWItemID item, int indent, LWItemType filter) {
  if (!item) return;
  const LWItemType itemType = info_.Type(item);
  if (itemType == filter) {
    std::string label = " \x03(g:" + std::to_string(indent) + ")";
    if ((LightWave::systemID & 0xF0000000u) == 0) {
      InterfaceInfo ui;
      label += "\x03(i:" + std::string(IconCode(itemType)) + ", " + std::to_string(ui.ItemColour(item)) + ")";
    }
    const char* name = info_.Name(item);
    label += name ? name : "(none)";
    entries.push_back({label, item});
  }
  for (LWItemID child = info_.FirstChild(item); child; child = info_.NextChild(item, child))
    addChildren(child, indent + 10, filter);
}

}  // namespace hostkit
