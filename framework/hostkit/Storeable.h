#pragma once

#include <lwtypes.h>

namespace hostkit {

class LoadState;
class SaveState;

// Anything that keeps itself in the host's scene files. Results go back to the host as they
// are: null for success, otherwise an error text.
class Storeable {
 public:
  virtual LWError Load(const LoadState&) { return nullptr; }
  virtual LWError Save(const SaveState&) { return nullptr; }

 protected:
  ~Storeable() = default;
};

}  // namespace hostkit
