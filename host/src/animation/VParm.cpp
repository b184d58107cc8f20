#include "lwhost/VParm.h"

#include "lwhost/Animation.h"

namespace lwhost {

VParm::VParm(Animation& animation, int envType, int texType)
    : animation_(animation), envType_(envType), texType_(texType) {}

// The component frees envelopes itself; by then nobody may be told.
VParm::~VParm() = default;

int VParm::envelopeType() const {
  switch (envType_ & 0xF0) {
    case LWVP_FLOAT: return LWET_FLOAT;
    case LWVP_DIST: return LWET_DISTANCE;
    case LWVP_ANGLE: return LWET_ANGLE;
    default: return LWET_PERCENT;  // percentages and colours
  }
}

std::string VParm::channelName(int channel) const {
  if (channelCount() == 1) return name_;
  if (channel < 0 || channel > 2) return {};
  const bool colour = (envType_ & 0xF0) >= (LWVP_COLOR & 0xF0);
  const std::string suffix(1, (colour ? "RGB" : "XYZ")[channel]);
  return (envType_ & LWVPF_VECTOR_NONAMES) ? suffix : name_ + "." + suffix;
}

void VParm::setup(const std::string& name, ChannelGroup* group, LWVP_EventFunc* eventFunc,
                  const std::string& pluginName, void* userData) {
  if (!group) group = animation_.root();
  for (VParm* other : animation_.parameters(group))
    if (other != this && other->name() == name)
      animation_.note("parameter name \"" + name + "\" is used twice in channel group \"" + group->path() + "\"");
  name_ = name;
  group_ = group;
  eventFunc_ = eventFunc;
  pluginName_ = pluginName;
  userData_ = userData;
  setUp_ = true;
  for (int ch = 0; ch < channelCount(); ++ch)
    if (envelopes_[ch]) animation_.place(envelopes_[ch], group_, channelName(ch));
}

void VParm::valueAt(LWTime time, double result[3]) const noexcept {
  for (int ch = 0; ch < 3; ++ch) result[ch] = envelopes_[ch] ? envelopes_[ch]->evaluate(time) : value_[ch];
}

std::array<double, 3> VParm::valueAt(LWTime time) const {
  std::array<double, 3> result;
  valueAt(time, result.data());
  return result;
}

int VParm::setValue(const double* value) {
  if (!value || enveloped()) return 0;
  const int n = channelCount();
  for (int ch = 0; ch < n; ++ch) value_[ch] = value[ch];
  return n;
}

bool VParm::enveloped() const { return envelopes_[0] || envelopes_[1] || envelopes_[2]; }

Envelope* VParm::envelope(int channel) const {
  return channel >= 0 && channel < channelCount() ? envelopes_[channel] : nullptr;
}

int VParm::state() const { return (enveloped() ? LWVPSF_ENV : 0) | (textured_ ? LWVPSF_TEX : 0); }

void VParm::setState(int state) {
  if (state & LWVPSF_ENV) {
    for (int ch = 0; ch < channelCount(); ++ch) ensureEnvelope(ch);
  } else {
    dropEnvelopes();
  }
  // A parameter made with LWVPDT_NOTXTR cannot carry a texture.
  const bool texture = (state & LWVPSF_TEX) && texType_ != LWVPDT_NOTXTR;
  if (texture != textured_) {
    textured_ = texture;
    event(texture ? LWVPEC_TEXNEW : LWVPEC_TEXOLD);
  }
}

void VParm::ensureEnvelope(int channel) {
  if (envelopes_[channel]) return;
  if (!setUp_) animation_.note("parameter enveloped before setup named it; its envelopes are detached");
  Envelope* made = animation_.newEnvelope(group_, channelName(channel), envelopeType());
  made->parameter_ = this;
  made->addKey(0.0, value_[channel]);
  envelopes_[channel] = made;
  event(LWVPEC_ENVNEW);
}

void VParm::dropEnvelope(int channel) {
  Envelope* gone = envelopes_[channel];
  if (!gone) return;
  event(LWVPEC_ENVOLD);
  envelopes_[channel] = nullptr;
  gone->parameter_ = nullptr;
  animation_.destroyEnvelope(gone);
}

void VParm::dropEnvelopes() {
  for (int ch = 0; ch < 3; ++ch) dropEnvelope(ch);
}

// Someone destroyed one of our envelopes through the envelope service.
void VParm::forget(Envelope* envelope) {
  for (auto& slot : envelopes_)
    if (slot == envelope) {
      slot = nullptr;
      envelope->parameter_ = nullptr;
      event(LWVPEC_ENVOLD);
    }
}

void VParm::event(en_lwvpec code) {
  if (eventFunc_ && !animation_.closing_) eventFunc_(this, userData_, code, nullptr);
}

const EnvelopeKey* VParm::addKey(int channel, LWTime time, double value) {
  if (channel < 0 || channel >= channelCount()) return nullptr;
  ensureEnvelope(channel);
  return envelopes_[channel]->addKey(time, value);
}

void VParm::copyFrom(const VParm& other) {
  if (&other == this) return;
  value_ = other.value_;
  for (int ch = 0; ch < channelCount(); ++ch) {
    const Envelope* source = other.envelope(ch);
    if (source) {
      ensureEnvelope(ch);
      envelopes_[ch]->copyFrom(*source);
    } else {
      dropEnvelope(ch);
    }
  }
  textured_ = other.textured_ && texType_ != LWVPDT_NOTXTR;
}

}  // namespace lwhost
