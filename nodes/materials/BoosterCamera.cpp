#include "nodes/materials/BoosterCamera.h"

#include "hostkit/LightWave.h"
#include "hostkit/LoadState.h"
#include "hostkit/SaveState.h"
#include "hostkit/SceneInfo.h"

namespace vorn {

void BoosterCamera::NewTime(LWTime time) {
  if (hostkit::LightWave::IsModeler()) return;
  // Held only for this read: a render pass asks once per time step.
  hostkit::SceneInfo scene;
  if (scene.available() && scene.getGlobal()->renderCamera) renderCamera = scene.getGlobal()->renderCamera(time);
}

void* BoosterCamera::DataGet() {
  shown_ = cameraOnly;
  return &shown_;
}

void BoosterCamera::DataSet(const void* value) {
  if (value) cameraOnly = *static_cast<const int*>(value) != 0 ? 1 : 0;
}

// Only a byte of exactly 1 turns the setting on: anything else a scene holds reads as off.
LWError BoosterCamera::Load(const hostkit::LoadState& state) {
  unsigned char byte = 0;
  state.readU1(&byte);
  cameraOnly = byte == 1 ? 1 : 0;
  return nullptr;
}

LWError BoosterCamera::Save(const hostkit::SaveState& state) {
  const unsigned char byte = cameraOnly ? 1 : 0;
  state.writeU1(&byte);
  return nullptr;
}

}  // namespace vorn
