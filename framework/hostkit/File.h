#pragma once

#include <lwio.h>

namespace hostkit {

class Storeable;

// Loads or saves one Storeable through a host state it does not own.
class File {
 public:
  explicit File(const LWLoadState* load) : load_(load) {}
  explicit File(const LWSaveState* save) : save_(save) {}

  LWError Load(Storeable& item) const;
  LWError Save(Storeable& item) const;

 private:
  const LWLoadState* load_ = nullptr;
  const LWSaveState* save_ = nullptr;
};

}  // namespace hostkit
