#pragma once

#include <lwnodes.h>

#include <array>

#include "hostkit/XPanelNodeHandler.h"
#include "nodes/materials/BoosterCamera.h"
#include "nodes/materials/BoosterChannel.h"

namespace vorn {

// The Material Booster: scales each channel of a material by its own boost, or by a blend
// between boost and maximum that a connected curve drives.
class MaterialBooster : public hostkit::XPanelNodeHandler {
 public:
  static constexpr int kChannels = 5;  // diffuse, specular, reflection, refraction, transparency

  MaterialBooster(void* priv, void* context, LWError* err);
  MaterialBooster& operator=(const MaterialBooster& other);

  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override;
  LWError NewTime(LWFrame frame, LWTime time) override;

  void* DataGet(unsigned int id) override;
  int DataSet(unsigned int id, void* value) override;
  int Interface(int version, LWInterface* local, void* serverData) override;

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  std::array<BoosterChannel, kChannels> channels;
  BoosterCamera camera{0};

 private:
  hostkit::LWNodeInput* materialIn_ = nullptr;
  hostkit::LWNodeOutput* materialOut_ = nullptr;
};

}  // namespace vorn
