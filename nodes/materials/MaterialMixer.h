#pragma once

#include <lwnodes.h>

#include <array>

#include "hostkit/XPanelNodeHandler.h"
#include "nodes/materials/MaterialComponent.h"

namespace vorn {

// The Material Blender: layers a foreground material over a background one, channel by
// channel, each channel with its own blend mode and opacity.
class MaterialMixer : public hostkit::XPanelNodeHandler {
 public:
  static constexpr int kChannels = 5;  // diffuse, specular, reflection, refraction, transparency

  MaterialMixer(void* priv, void* context, LWError* err);
  MaterialMixer& operator=(const MaterialMixer& other);

  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) noexcept override;
  LWError NewTime(LWFrame frame, LWTime time) override;
  unsigned int Flags() override { return NF_TRANSP; }

  void* DataGet(unsigned int id) override;
  int DataSet(unsigned int id, void* value) override;
  int Interface(int version, LWInterface* local, void* serverData) override;

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  std::array<MaterialComponent, kChannels> components;

 private:
  // Blends channel k of the records into `result`.
  void blendChannel(int k, LWNodalAccess* access, LWNodalMaterial& bg, LWNodalMaterial& fg,
                    LWNodalMaterial& result, double opacity) const noexcept;
  bool anyUnconnected(const std::array<hostkit::LWNodeInput*, kChannels>& inputs) const;

  hostkit::LWNodeOutput* materialOut_ = nullptr;
  std::array<hostkit::LWNodeOutput*, kChannels> channelOut_{};
  hostkit::LWNodeInput* bgMaterial_ = nullptr;
  hostkit::LWNodeInput* fgMaterial_ = nullptr;
  std::array<hostkit::LWNodeInput*, kChannels> bgChannel_{};
  std::array<hostkit::LWNodeInput*, kChannels> fgChannel_{};
};

}  // namespace vorn
