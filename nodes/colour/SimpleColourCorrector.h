#pragma once

#include <lwenvel.h>
#include <lwxpanel.h>

#include <memory>

#include "hostkit/ChannelGroup.h"
#include "hostkit/Storeable.h"
#include "hostkit/VParm.h"

namespace vorn {

// A reusable colour correction: brightness, contrast, hue rotation, saturation, gamma and
// inversion, with their persistence and panel data.
class SimpleColourCorrector final : public hostkit::Storeable {
 public:
  // The parameters appear in `group`, or in a group of their own made inside it.
  SimpleColourCorrector(void* group, const char* pluginName, bool ownGroup);
  SimpleColourCorrector(const SimpleColourCorrector&) = delete;
  SimpleColourCorrector& operator=(const SimpleColourCorrector& other);

  void NewTime(double time);
  void PreCalculate();

  void* DataGet(unsigned int id);
  int DataSet(unsigned int id, void* value);

  // Back to neutral, envelopes removed; the invert switch is left as it is.
  void Defaults();
  // The "Default" button: the corrector is the panel's user data of that button.
  static void ClickDefaults(LWXPanelID panel, int cid);

  LWError Load(const hostkit::LoadState& state) override;
  LWError Save(const hostkit::SaveState& state) override;

  std::unique_ptr<hostkit::VParm> Brightness, Contrast, Hue, Saturation, Gamma;
  bool invert = false;
  bool gammaActive = false;
  bool needsColourWork = false;
  bool dirty = true;
  hostkit::GlobalBase<st_LWEnvelopeFuncs> envelopes;
  std::unique_ptr<hostkit::ChannelGroup> group;
  float inverseGamma = 1.0f;
};

}  // namespace vorn
