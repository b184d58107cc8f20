#pragma once

#include <lwnodes.h>

#include <memory>

#include "hostkit/XPanelNodeHandler.h"
#include "nodes/utility/CacheSlot.h"

namespace vorn {

// Sits between an expensive upstream network and its consumers: each output evaluates its
// input once per spot, render thread and ray level, and hands the remembered value to every
// further request for that spot.
class CacheNode : public hostkit::XPanelNodeHandler {
 public:
  CacheNode(void* priv, void* context, LWError* err);
  CacheNode& operator=(const CacheNode& other);

  LWError Init(int mode) override;
  void Cleanup() override;
  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override;
  unsigned int Flags() override { return NF_TRANSP; }

  void* DataGet(unsigned int id) override;
  int DataSet(unsigned int id, void* value) override;
  int Interface(int version, LWInterface* local, void* serverData) override;

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  bool passThrough = false;
  int numThreads = 0;
  int levels = 0;  // ray recursion depth + 1
  int mode = 0;    // of the last Init; LWINIT_RENDER caches
  std::unique_ptr<CacheSlot[]> slots;  // [thread * levels + level]

 private:
  enum Connection { kMaterial, kScalar, kColour, kVector, kInteger, kConnections };

  // Serves `output` from `record` when it holds this spot, else from the input (into the
  // record when there is one).
  template <class V>
  void serve(Connection c, CacheRecord<V>* record, LWNodalAccess* access, NodeValue value);

  hostkit::LWNodeInput* inputs_[kConnections] = {};
  hostkit::LWNodeOutput* outputs_[kConnections] = {};
  int shownFlag_ = 0;  // what DataGet hands the panel
};

}  // namespace vorn
