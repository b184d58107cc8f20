#pragma once

#include <lwvparm.h>

#include <array>
#include <string>

namespace lwhost {

class Animation;
class ChannelGroup;
class Envelope;
struct EnvelopeKey;

// An animatable parameter ("vparm"): one or three channels, each a plain value or an envelope.
//
// Channel names: a scalar's channel is the parameter's name. A vector's channels carry a suffix,
// ".R/.G/.B" for colours and ".X/.Y/.Z" otherwise: "Name.R" by default and with
// LWVPF_VECTOR_PARMNAMES, only "R" with LWVPF_VECTOR_NONAMES. LightWave names default vectors
// after the type ("Distance.X"); using the parameter's name keeps two vectors of one type in
// one group apart, as the uniqueness rule requires.
//
// Textures: the host has no texture evaluator, so LWVPSF_TEX only records that a texture was
// asked for; the texture contributes nothing and its opacity is 0.
class VParm {
 public:
  VParm(Animation& animation, int envType, int texType);
  ~VParm();
  VParm(const VParm&) = delete;
  VParm& operator=(const VParm&) = delete;

  int envType() const { return envType_; }
  int textureType() const { return texType_; }
  int channelCount() const { return (envType_ & LWVPF_VECTOR) ? 3 : 1; }
  // The LWET_* type each channel's envelope gets.
  int envelopeType() const;

  // Names the parameter and places its envelopes (existing ones move along).
  void setup(const std::string& name, ChannelGroup* group, LWVP_EventFunc* eventFunc,
             const std::string& pluginName, void* userData);
  bool isSetUp() const { return setUp_; }
  const std::string& name() const { return name_; }
  const std::string& pluginName() const { return pluginName_; }
  ChannelGroup* group() const { return group_; }
  std::string channelName(int channel) const;

  // The stored value; enveloped channels ignore it until their envelope goes.
  const std::array<double, 3>& value() const { return value_; }
  // Fills three doubles. Safe on render threads: no allocation, no locks.
  void valueAt(LWTime time, double result[3]) const noexcept;
  std::array<double, 3> valueAt(LWTime time) const;
  // Takes channelCount() doubles; 0 (and no change) while any channel is enveloped.
  int setValue(const double* value);

  int state() const;
  // Clearing a bit destroys, setting it creates (envelopes: one key at time 0 holding the value).
  void setState(int state);
  bool enveloped() const;
  Envelope* envelope(int channel) const;
  bool textured() const { return textured_; }

  // A key on one channel, enveloping the parameter first if needed. Null for a bad channel.
  const EnvelopeKey* addKey(int channel, LWTime time, double value);

  // Sub-blocks Value, State, and per enveloped channel Channel + Envelope; the caller opens
  // the surrounding non-leaf block. load accepts them in any order, skips unknown ones and
  // replaces envelopes and texture flag with exactly what it finds.
  LWError save(const LWSaveState* state) const;
  LWError load(const LWLoadState* state);

  // Value, state, envelopes (deep) and texture flag; this parameter's name and group stay.
  void copyFrom(const VParm& other);

 private:
  friend class Animation;

  void ensureEnvelope(int channel);
  void dropEnvelope(int channel);
  void dropEnvelopes();
  void forget(Envelope* envelope);
  void event(en_lwvpec code);

  Animation& animation_;
  int envType_;
  int texType_;
  std::string name_;
  std::string pluginName_;
  ChannelGroup* group_ = nullptr;
  LWVP_EventFunc* eventFunc_ = nullptr;
  void* userData_ = nullptr;
  bool setUp_ = false;
  std::array<double, 3> value_{0, 0, 0};
  std::array<Envelope*, 3> envelopes_{nullptr, nullptr, nullptr};
  bool textured_ = false;
};

}  // namespace lwhost
