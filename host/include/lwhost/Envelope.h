#pragma once

#include <lwenvel.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lwhost {

class ChannelGroup;
class VParm;

// Curve type of the span that ends at a key (the graph editor's codes).
enum KeyShape : int {
  kShapeTCB = 0,  // LightWave's default
  kShapeHermite = 1,
  kShapeBezier1D = 2,  // obsolete; evaluated as Hermite
  kShapeLinear = 3,
  kShapeStepped = 4,
  kShapeBezier2D = 5,
};

// What an envelope does before its first and after its last key.
enum Behavior : int {
  kBehaviorReset = 0,
  kBehaviorConstant = 1,
  kBehaviorRepeat = 2,
  kBehaviorOscillate = 3,
  kBehaviorOffsetRepeat = 4,
  kBehaviorLinear = 5,
};

// One key. Its LWEnvKeyframeID is its address, stable for the key's life.
//
// param[] by shape:
//  * Hermite / 1-D Bezier: param[0] incoming, param[1] outgoing tangent, both as slopes in value
//    per second, so that moving a neighbouring key does not change the curve's steepness here.
//  * 2-D Bezier: param[0], param[1] the incoming handle, param[2], param[3] the outgoing handle,
//    each as (time, value) offsets from the key.
//  * TCB, Linear, Stepped: unused, but kept.
// Tension, continuity and bias shape the key's tangents whenever a neighbouring TCB span needs one.
struct EnvelopeKey {
  double value = 0;
  double time = 0;
  int shape = kShapeTCB;
  double tension = 0;
  double continuity = 0;
  double bias = 0;
  double param[4] = {0, 0, 0, 0};
};

// An animation envelope: keys sorted by time, extrapolated by pre/post behaviours. Edits come
// from the interface thread between renders; evaluate() may run on many render threads at once
// and never allocates. One constructed directly belongs to no group and no component (the
// loaders use such scratch envelopes); plug-ins get theirs from Animation.
class Envelope {
 public:
  // Two keys closer in time than this are the same key (far below a frame at any rate).
  static constexpr double kTimeTolerance = 1e-6;

  Envelope(ChannelGroup* group, std::string name, int type);
  Envelope(const Envelope&) = delete;
  Envelope& operator=(const Envelope&) = delete;

  const std::string& name() const { return name_; }
  int type() const { return type_; }
  ChannelGroup* group() const { return group_; }
  // The parameter whose channel this is, or null for a free-standing envelope.
  VParm* parameter() const { return parameter_; }

  // Value at a time, LightWave's way: the span's shape is the shape of its end key.
  double evaluate(LWTime time) const noexcept;

  std::size_t keyCount() const { return keys_.size(); }
  const EnvelopeKey* key(std::size_t index) const { return index < keys_.size() ? keys_[index].get() : nullptr; }
  // The key at this time (within kTimeTolerance), or null.
  const EnvelopeKey* keyAt(LWTime time) const;
  // next(nullptr) is the first key, previous(nullptr) the last.
  const EnvelopeKey* next(const EnvelopeKey* key) const;
  const EnvelopeKey* previous(const EnvelopeKey* key) const;

  // A new key, or the existing key at that time given the new value. Null for a non-finite
  // time or value.
  const EnvelopeKey* addKey(LWTime time, double value, int shape = kShapeTCB);
  bool removeKey(const EnvelopeKey* key);
  // LWKEY_* attributes; the shape travels as a double here. False for a key not in this envelope,
  // a non-finite number, an unknown shape, or a time another key already holds.
  bool setAttribute(const EnvelopeKey* key, LWKeyTag tag, double value);
  bool attribute(const EnvelopeKey* key, LWKeyTag tag, double* value) const;

  int preBehavior() const { return pre_; }
  int postBehavior() const { return post_; }
  // False (and no change) for a code outside 0..5.
  bool setBehaviors(int pre, int post);
  bool visible() const { return visible_; }
  void setVisible(bool visible);

  // How many times it changed.
  int age() const { return age_; }

  // Keys and behaviours of another envelope; name, group and listeners stay.
  void copyFrom(const Envelope& other);
  void clearKeys();

  // The scene-file block "{ Envelope" (binary ENVL); see AnimationIO.cpp for both forms.
  LWError save(const LWSaveState* state) const;
  // Reads the next Envelope block at this level, replacing keys and behaviours. Faults in the
  // data are added to `problems`; the result is an error only when there is no Envelope block.
  LWError load(const LWLoadState* state, std::vector<std::string>* problems = nullptr);

  // Listeners keyed by their data pointer; a null function removes the listener with that data.
  // Returns 0 for a null function, else 1, as LightWave does.
  int setListener(LWEnvEventFunc func, void* data);

 private:
  friend class Animation;
  friend class VParm;

  void saveBody(const LWSaveState* state) const;
  void loadBody(const LWLoadState* state, std::vector<std::string>* problems);
  int indexOf(const void* key) const;
  void changed(LWEnvEvent event, const EnvelopeKey* key);
  void notify(LWEnvEvent event, void* eventData);
  void resort();

  double interpolate(LWTime time) const noexcept;
  double outgoing(std::size_t index) const noexcept;
  double incoming(std::size_t index) const noexcept;
  double bezier(std::size_t end, LWTime time) const noexcept;
  double slopeAtFirst() const noexcept;
  double slopeAtLast() const noexcept;

  ChannelGroup* group_;
  std::string name_;
  int type_;
  VParm* parameter_ = nullptr;
  std::vector<std::unique_ptr<EnvelopeKey>> keys_;
  int pre_ = kBehaviorConstant;
  int post_ = kBehaviorConstant;
  bool visible_ = true;
  int age_ = 0;
  std::vector<std::pair<LWEnvEventFunc, void*>> listeners_;
};

}  // namespace lwhost
