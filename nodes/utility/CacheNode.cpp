#include "nodes/utility/CacheNode.h"

#include <cstddef>
#include <new>

#include "hostkit/HostVersion.h"
#include "hostkit/LightWave.h"
#include "hostkit/LoadState.h"
#include "hostkit/Logo.h"
#include "hostkit/SaveState.h"
#include "hostkit/SceneInfo.h"

namespace vorn {

namespace {

constexpr unsigned int kPassThroughControl = hostkit::kFirstControl;

const LWBlockIdent kBlocks[] = {{LWID_('T', 'H', 'R', 'U'), "PassThrough"}, {0, nullptr}};
const LWBlockIdent& kPassThroughBlock = kBlocks[0];

LWXPanelControl controls[] = {hostkit::kLogoControl,
                              hostkit::kWebButtonControl,
                              {kPassThroughControl, "Pass Through", "iBoolean"},
                              {0, nullptr, nullptr}};
LWXPanelDataDesc data[] = {{kPassThroughControl, "Pass Through", "integer"}, {0, nullptr, nullptr}};

}  // namespace

CacheNode::CacheNode(void*, void* context, LWError* err) : XPanelNodeHandler(context) {
  if (!hostkit::RequireHost92(err)) return;
  static const struct {
    ConnectionType type;
    const char* name;
  } kTable[kConnections] = {{NOT_MATERIAL, "Material"},
                            {NOT_SCALAR, "Scalar"},
                            {NOT_COLOR, "Colour"},
                            {NOT_VECTOR, "Vector"},
                            {NOT_INTEGER, "Integer"}};
  for (int c = 0; c < kConnections; ++c) inputs_[c] = addInput(kTable[c].type, kTable[c].name);
  for (int c = 0; c < kConnections; ++c) outputs_[c] = addOutput(kTable[c].type, kTable[c].name);
  setColour(11, 8, 51);
}

// What was cached belongs to the render of the node it was cached for.
CacheNode& CacheNode::operator=(const CacheNode& other) {
  passThrough = other.passThrough;
  return *this;
}

LWError CacheNode::Init(int renderMode) {
  if (!hostkit::LightWave::IsModeler()) {
    hostkit::SceneInfo scene;
    const st_LWSceneInfo* info = scene.getGlobal();
    numThreads = info ? info->numThreads : 0;
    levels = info ? info->recursionDepth + 1 : 0;
    slots.reset();
    if (numThreads > 0 && levels > 0) {
      // Zeroed whole: keys as a fresh cache needs them, values so that nothing reads garbage.
      const std::size_t count = static_cast<std::size_t>(numThreads) * static_cast<std::size_t>(levels);
      slots.reset(new (std::nothrow) CacheSlot[count]());
    }
    // Without room for the slots every request goes upstream, as with no threads at all.
    if (!slots) numThreads = levels = 0;
  }
  mode = renderMode;
  return RenderHandler::Init(renderMode);
}

void CacheNode::Cleanup() {
  slots.reset();
  numThreads = 0;
  levels = 0;
}

template <class V>
void CacheNode::serve(Connection c, CacheRecord<V>* record, LWNodalAccess* access, NodeValue value) {
  if (!record) {
    V direct{};
    inputs_[c]->evaluate(access, &direct);
    outputs_[c]->setValue(value, static_cast<void*>(&direct));
    return;
  }
  if (!record->key.matches(*access)) {
    record->key = SpotKey::Of(*access);
    record->value = V{};
    inputs_[c]->evaluate(access, &record->value);
  }
  outputs_[c]->setValue(value, static_cast<void*>(&record->value));
}

void CacheNode::Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) {
  const int thread = access->ResourceContextIndex;
  const int level = access->bounces;
  // A thread or level the render did not announce at Init has no slot and goes upstream.
  CacheSlot* slot = nullptr;
  if (!hostkit::LightWave::IsModeler() && mode == LWINIT_RENDER && !passThrough && thread >= 0 &&
      thread < numThreads && level >= 0 && level < levels)
    slot = &slots[static_cast<std::size_t>(thread) * levels + level];

  if (outputs_[kMaterial]->is(output))
    serve(kMaterial, slot ? &slot->material : nullptr, access, value);
  else if (outputs_[kScalar]->is(output))
    serve(kScalar, slot ? &slot->scalar : nullptr, access, value);
  else if (outputs_[kColour]->is(output))
    serve(kColour, slot ? &slot->colour : nullptr, access, value);
  else if (outputs_[kVector]->is(output))
    serve(kVector, slot ? &slot->vector : nullptr, access, value);
  else if (outputs_[kInteger]->is(output))
    serve(kInteger, slot ? &slot->integer : nullptr, access, value);
}

void* CacheNode::DataGet(unsigned int id) {
  if (id != kPassThroughControl) return nullptr;
  shownFlag_ = passThrough ? 1 : 0;
  return &shownFlag_;
}

int CacheNode::DataSet(unsigned int id, void* value) {
  if (id == kPassThroughControl && value) passThrough = *static_cast<int*>(value) != 0;
  return 1;
}

int CacheNode::Interface(int, LWInterface* local, void*) {
  if (!panel) CreateViewXPanel(controls, data, hostkit::LogoHints(), false);
  local->panel = panel;
  return 0;
}

LWError CacheNode::Load(const hostkit::LoadState& state) {
  while (LWID id = state.findBlock(kBlocks)) {
    if (id == kPassThroughBlock.id) {
      unsigned char on = 0;
      state.readU1(&on);
      passThrough = on == 1;
    }
    state.endBlock();
  }
  return nullptr;
}

LWError CacheNode::Save(const hostkit::SaveState& state) {
  const unsigned char on = passThrough ? 1 : 0;
  state.beginBlock(kPassThroughBlock, true);
  state.writeU1(&on);
  state.endBlock();
  return nullptr;
}

}  // namespace vorn
