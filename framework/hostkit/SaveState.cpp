#include "hostkit/SaveState.h"

#include "hostkit/Storeable.h"

namespace hostkit {

void SaveState::WriteItem(const LWBlockIdent& id, Storeable& item, bool leaf) const {
  beginBlock(id, leaf);
  item.Save(*this);
  endBlock();
}

}  // namespace hostkit
