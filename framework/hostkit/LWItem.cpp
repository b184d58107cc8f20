#include "hostkit/LWItem.h"

#include "hostkit/LightWave.h"
#include "hostkit/LoadState.h"
#include "hostkit/SaveState.h"

namespace hostkit {

namespace {
const LWBlockIdent kItemBlocks[] = {
    {LWID_('I', 'T', 'E', 'M'), "Item"},
    {LWID_('I', 'T', 'I', 'D'), "ItemID"},
    {LWID_('I', 'T', 'T', 'Y'), "ItemType"},
    {0, nullptr},
};
const LWBlockIdent& kName = kItemBlocks[0];
const LWBlockIdent& kID = kItemBlocks[1];
const LWBlockIdent& kType = kItemBlocks[2];
}  // namespace

LWError LWItem::Save(const SaveState& state) {
  if (!LightWave::IsModeler()) {
    // A cleared choice is stored under "(none)"; an item the host no longer names loses its
    // name, so that loading cannot re-find some other item under the stale one.
    SetName(id ? info.Name(id) : "(none)");
  }
  if (!GetName().empty()) {
    state.beginBlock(kName, true);
    state.writeStr(GetName().c_str());
    state.endBlock();
  }
  unsigned int value = LWITEMID2UINT(id);
  state.beginBlock(kID, true);
  state.writeU4(&value);
  state.endBlock();
  value = static_cast<unsigned int>(type);
  state.beginBlock(kType, true);
  state.writeU4(&value);
  state.endBlock();
  return nullptr;
}

LWError LWItem::Load(const LoadState& state) {
  while (LWID block = state.findBlock(kItemBlocks)) {
    if (block == kName.id) {
      char buffer[1024] = {0};
      state.readStr(buffer, 1023);
      SetName(buffer);
    } else if (block == kID.id) {
      unsigned int value = 0;
      if (state.readU4(&value) == 1) id = UINT2LWITEMID(value);
    } else if (block == kType.id) {
      unsigned int value = 0;
      if (state.readU4(&value) == 1) type = static_cast<LWItemType>(value);
    }
    state.endBlock();
  }
  if (!LightWave::IsModeler()) {
    if (LWItemID found = info.FindItemID(GetName(), type)) id = found;
  }
  return nullptr;
}

}  // namespace hostkit
