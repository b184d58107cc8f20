#pragma once

#include <lwnodes.h>

#include <memory>
#include <string>

#include "hostkit/LWNodeInput.h"
#include "hostkit/NodeHandler.h"
#include "hostkit/NodeServices.h"
#include "hostkit/Storeable.h"
#include "hostkit/VParm.h"

namespace vorn {

// One channel of the Material Blender: how its background and foreground are blended (mode
// and opacity, each overridable by a connection) and the blending itself.
class MaterialComponent : public hostkit::Storeable {
 public:
  MaterialComponent() = default;
  MaterialComponent(const MaterialComponent&) = delete;
  // Copies the opacity with its envelope and the mode; connections stay with their node.
  MaterialComponent& operator=(const MaterialComponent& other);

  // Creates the channel's opacity and mode inputs on `node`, then its opacity parameter.
  void Initialize(hostkit::NodeHandler& node, const std::string& channel);

  double getOpacity(LWNodalAccess* access) const;
  int getMode(LWNodalAccess* access) const;

  // Blends a colour channel: `bg` and `fg` come filled from the materials and may be replaced
  // by the channel's own inputs.
  void evaluate(LWNodalAccess* access, double* bg, double* fg, const hostkit::LWNodeInput* bgInput,
                const hostkit::LWNodeInput* fgInput, double* result, double opacity) const;
  // Blends the scalar channel.
  void evaluate(LWNodalAccess* access, double bg, double fg, const hostkit::LWNodeInput* bgInput,
                const hostkit::LWNodeInput* fgInput, double* result, double opacity) const;

  // Panel values: null while the matching input is connected, so the control shows none.
  void* OpacityGet() const;
  void* ModeGet();
  void setMode(int m) { mode = m; }

  void NewTime(LWFrame frame, LWTime time);

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  hostkit::LWNodeInput* modeInput = nullptr;
  hostkit::LWNodeInput* opacityInput = nullptr;
  hostkit::LWNodeUtility utility;
  std::unique_ptr<hostkit::VParm> opacity;
  int mode = 0;

 private:
  int clampedMode(LWNodalAccess* access) const;
};

}  // namespace vorn
