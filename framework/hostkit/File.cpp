#include "hostkit/File.h"

#include "hostkit/LoadState.h"
#include "hostkit/SaveState.h"
#include "hostkit/Storeable.h"

namespace hostkit {

LWError File::Load(Storeable& item) const { return item.Load(LoadState(load_)); }

LWError File::Save(Storeable& item) const { return item.Save(SaveState(save_)); }

}  // namespace hostkit
