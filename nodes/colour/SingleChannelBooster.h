#pragma once

#include <lwnodes.h>

#include "hostkit/XPanelNodeHandler.h"
#include "nodes/materials/BoosterCamera.h"
#include "nodes/materials/BoosterChannel.h"

namespace vorn {

// What the Colour and Scalar Boosters share: one input, one boosted channel of the same name,
// one output, the camera setting (on by default), their form and their scene blocks. Each
// derived node scales its own type in Evaluate.
class SingleChannelBooster : public hostkit::XPanelNodeHandler {
 public:
  // `blocks`: the camera setting's block, then the channel's, then the end mark.
  SingleChannelBooster(void* context, ConnectionType type, const char* name, const LWBlockIdent* blocks);
  SingleChannelBooster& operator=(const SingleChannelBooster& other);

  LWError NewTime(LWFrame frame, LWTime time) override;

  void* DataGet(unsigned int id) override;
  int DataSet(unsigned int id, void* value) override;
  int Interface(int version, LWInterface* local, void* serverData) override;

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  BoosterChannel channel;
  BoosterCamera camera{1};

 protected:
  hostkit::LWNodeInput* input_ = nullptr;
  hostkit::LWNodeOutput* output_ = nullptr;

 private:
  const LWBlockIdent* blocks_;
};

}  // namespace vorn
