#pragma once

#include <lwnodes.h>

#include "hostkit/LWItemCallback.h"
#include "hostkit/XPanelNodeHandler.h"

namespace vorn {

// Single Light Lambert: the colour one chosen light brings to the spot, weighted by the Lambert
// cosine, and whether that light reaches the spot at all.
class IlluminationNode : public hostkit::XPanelNodeHandler {
 public:
  IlluminationNode(void* priv, void* context, LWError* err);
  IlluminationNode& operator=(const IlluminationNode& other);

  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override;

  void* DataGet(unsigned int id) override;
  int DataSet(unsigned int id, void* value) override;
  int Interface(int version, LWInterface* local, void* serverData) override;

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

 private:
  hostkit::LWNodeOutput* colourOut_ = nullptr;
  hostkit::LWNodeOutput* litOut_ = nullptr;
  hostkit::LWItemCallback light_{LWI_LIGHT, true};  // "(none)" leads the pop-up
};

}  // namespace vorn
