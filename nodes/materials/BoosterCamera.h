#pragma once

#include <lwnodes.h>
#include <lwrender.h>

#include "hostkit/Storeable.h"

namespace vorn {

// The boosters' "Camera Rays Only" setting and the test it makes per sample: whether the ray
// that reached the spot came straight from the render camera. Saved as one byte.
class BoosterCamera : public hostkit::Storeable {
 public:
  explicit BoosterCamera(int cameraOnly) : cameraOnly(cameraOnly) {}

  // Whether the boost applies to this sample. A ray without a source counts as the camera's.
  bool boosts(const LWNodalAccess* access) const {
    return cameraOnly == 0 || access->sourceID == LWITEM_NULL || access->sourceID == renderCamera;
  }

  // Learns the camera that renders at `time`; the modeller has none, so the last one stays.
  void NewTime(LWTime time);

  // The panel's check box: a copy to show, and the user's edit (any non-zero value is on).
  void* DataGet();
  void DataSet(const void* value);

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  int cameraOnly;
  LWItemID renderCamera = LWITEM_NULL;

 private:
  int shown_ = 0;
};

}  // namespace vorn
