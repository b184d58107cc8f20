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

  // The per-sample functions are inline: the blender calls them for every channel of every spot.
  double getOpacity(LWNodalAccess* access) const {
    double value = opacity->value[0];
    opacityInput->evaluate(access, &value);
    return value;
  }
  int getMode(LWNodalAccess* access) const {
    int value = mode;
    modeInput->evaluate(access, &value);
    return value;
  }

  // Blends a colour channel: `bg` and `fg` come filled from the materials and may be replaced
  // by the channel's own inputs. The host's blend keeps `alpha` of the background, so the
  // opacity goes in as its complement.
  void evaluate(LWNodalAccess* access, double* bg, double* fg, const hostkit::LWNodeInput* bgInput,
                const hostkit::LWNodeInput* fgInput, double* result, double op) const {
    bgInput->evaluate(access, bg);
    if (op == 0.0) {
      result[0] = bg[0];
      result[1] = bg[1];
      result[2] = bg[2];
      return;
    }
    fgInput->evaluate(access, fg);
    utility.Blend(result, bg, fg, 1.0 - op, static_cast<BlendingMode>(clampedMode(access)));
  }
  // Blends the scalar channel.
  void evaluate(LWNodalAccess* access, double bg, double fg, const hostkit::LWNodeInput* bgInput,
                const hostkit::LWNodeInput* fgInput, double* result, double op) const {
    bgInput->evaluate(access, &bg);
    if (op == 0.0) {
      *result = bg;
      return;
    }
    fgInput->evaluate(access, &fg);
    LWDVector r = {*result, 0.0, 0.0}, b = {bg, 0.0, 0.0}, f = {fg, 0.0, 0.0};
    utility.Blend(r, b, f, 1.0 - op, static_cast<BlendingMode>(clampedMode(access)));
    *result = r[0];
  }

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
  int clampedMode(LWNodalAccess* access) const {
    const int m = getMode(access);
    return m < Blend_Normal ? Blend_Normal : m > Blend_Blue ? Blend_Blue : m;
  }
};

}  // namespace vorn
