#include "lwhost/Envelope.h"

#include <algorithm>
#include <cmath>

namespace lwhost {

namespace {

bool Finite(double v) { return std::isfinite(v); }

// Cubic Hermite on u in [0,1]; tangents are in value per span.
double Hermite(double u, double v0, double v1, double out, double in) {
  const double u2 = u * u, u3 = u2 * u;
  return (2 * u3 - 3 * u2 + 1) * v0 + (-2 * u3 + 3 * u2) * v1 + (u3 - 2 * u2 + u) * out + (u3 - u2) * in;
}

double Cubic(double s, double p0, double p1, double p2, double p3) {
  const double r = 1 - s;
  return r * r * r * p0 + 3 * r * r * s * p1 + 3 * r * s * s * p2 + s * s * s * p3;
}

}  // namespace

Envelope::Envelope(ChannelGroup* group, std::string name, int type)
    : group_(group), name_(std::move(name)), type_(type) {}

// ---- keys ---------------------------------------------------------------------------------

int Envelope::indexOf(const void* key) const {
  if (!key) return -1;
  for (std::size_t i = 0; i < keys_.size(); ++i)
    if (keys_[i].get() == key) return static_cast<int>(i);
  return -1;
}

const EnvelopeKey* Envelope::keyAt(LWTime time) const {
  for (const auto& k : keys_)
    if (std::fabs(k->time - time) <= kTimeTolerance) return k.get();
  return nullptr;
}

const EnvelopeKey* Envelope::next(const EnvelopeKey* key) const {
  if (!key) return keys_.empty() ? nullptr : keys_.front().get();
  const int i = indexOf(key);
  return (i < 0 || i + 1 >= static_cast<int>(keys_.size())) ? nullptr : keys_[i + 1].get();
}

const EnvelopeKey* Envelope::previous(const EnvelopeKey* key) const {
  if (!key) return keys_.empty() ? nullptr : keys_.back().get();
  const int i = indexOf(key);
  return i <= 0 ? nullptr : keys_[i - 1].get();
}

const EnvelopeKey* Envelope::addKey(LWTime time, double value, int shape) {
  if (!Finite(time) || !Finite(value) || shape < kShapeTCB || shape > kShapeBezier2D) return nullptr;
  if (const EnvelopeKey* existing = keyAt(time)) {
    setAttribute(existing, LWKEY_VALUE, value);
    return existing;
  }
  auto key = std::make_unique<EnvelopeKey>();
  key->time = time;
  key->value = value;
  key->shape = shape;
  auto at = std::upper_bound(keys_.begin(), keys_.end(), time,
                             [](double t, const std::unique_ptr<EnvelopeKey>& k) { return t < k->time; });
  EnvelopeKey* added = keys_.insert(at, std::move(key))->get();
  changed(LWEEVNT_KEY_INSERT, added);
  return added;
}

bool Envelope::removeKey(const EnvelopeKey* key) {
  const int i = indexOf(key);
  if (i < 0) return false;
  // Listeners get the id while it still names a key.
  changed(LWEEVNT_KEY_DELETE, key);
  const int still = indexOf(key);  // a listener may have removed it already
  if (still >= 0) keys_.erase(keys_.begin() + still);
  return true;
}

bool Envelope::setAttribute(const EnvelopeKey* handle, LWKeyTag tag, double v) {
  const int i = indexOf(handle);
  if (i < 0 || !Finite(v)) return false;
  EnvelopeKey& k = *keys_[i];
  switch (tag) {
    case LWKEY_VALUE:
      k.value = v;
      break;
    case LWKEY_TIME: {
      const EnvelopeKey* other = keyAt(v);
      if (other && other != &k) return false;
      k.time = v;
      resort();
      changed(LWEEVNT_KEY_TIME, &k);
      return true;
    }
    case LWKEY_SHAPE:
      if (v != std::floor(v) || v < kShapeTCB || v > kShapeBezier2D) return false;
      k.shape = static_cast<int>(v);
      break;
    case LWKEY_TENSION:
      k.tension = v;
      break;
    case LWKEY_CONTINUITY:
      k.continuity = v;
      break;
    case LWKEY_BIAS:
      k.bias = v;
      break;
    case LWKEY_PARAM_0:
    case LWKEY_PARAM_1:
    case LWKEY_PARAM_2:
    case LWKEY_PARAM_3:
      k.param[tag - LWKEY_PARAM_0] = v;
      break;
    default:
      return false;
  }
  // Anything but the time changes the curve's values.
  changed(LWEEVNT_KEY_VALUE, &k);
  return true;
}

bool Envelope::attribute(const EnvelopeKey* handle, LWKeyTag tag, double* out) const {
  const int i = indexOf(handle);
  if (i < 0 || !out) return false;
  const EnvelopeKey& k = *keys_[i];
  switch (tag) {
    case LWKEY_VALUE: *out = k.value; return true;
    case LWKEY_TIME: *out = k.time; return true;
    case LWKEY_SHAPE: *out = k.shape; return true;
    case LWKEY_TENSION: *out = k.tension; return true;
    case LWKEY_CONTINUITY: *out = k.continuity; return true;
    case LWKEY_BIAS: *out = k.bias; return true;
    case LWKEY_PARAM_0:
    case LWKEY_PARAM_1:
    case LWKEY_PARAM_2:
    case LWKEY_PARAM_3: *out = k.param[tag - LWKEY_PARAM_0]; return true;
    default: return false;
  }
}

void Envelope::resort() {
  std::stable_sort(keys_.begin(), keys_.end(),
                   [](const std::unique_ptr<EnvelopeKey>& a, const std::unique_ptr<EnvelopeKey>& b) {
                     return a->time < b->time;
                   });
}

bool Envelope::setBehaviors(int pre, int post) {
  if (pre < kBehaviorReset || pre > kBehaviorLinear || post < kBehaviorReset || post > kBehaviorLinear) return false;
  pre_ = pre;
  post_ = post;
  ++age_;
  return true;
}

void Envelope::setVisible(bool visible) {
  visible_ = visible;
  ++age_;
}

void Envelope::copyFrom(const Envelope& other) {
  if (&other == this) return;
  std::vector<std::unique_ptr<EnvelopeKey>> keys;
  keys.reserve(other.keys_.size());
  for (const auto& k : other.keys_) keys.push_back(std::make_unique<EnvelopeKey>(*k));
  keys_ = std::move(keys);
  pre_ = other.pre_;
  post_ = other.post_;
  visible_ = other.visible_;
  ++age_;
}

void Envelope::clearKeys() {
  keys_.clear();
  ++age_;
}

// ---- listeners ------------------------------------------------------------------------------

int Envelope::setListener(LWEnvEventFunc func, void* data) {
  auto same = [data](const std::pair<LWEnvEventFunc, void*>& l) { return l.second == data; };
  auto it = std::find_if(listeners_.begin(), listeners_.end(), same);
  if (!func) {
    if (it != listeners_.end()) listeners_.erase(it);
    return 0;
  }
  if (it != listeners_.end())
    it->first = func;
  else
    listeners_.emplace_back(func, data);
  return 1;
}

void Envelope::changed(LWEnvEvent event, const EnvelopeKey* key) {
  ++age_;
  notify(event, const_cast<EnvelopeKey*>(key));
}

void Envelope::notify(LWEnvEvent event, void* eventData) {
  // A listener may unhook itself or others while being told.
  const auto listeners = listeners_;
  for (const auto& [func, data] : listeners) func(data, this, event, eventData);
}

// ---- evaluation -----------------------------------------------------------------------------
//
// TCB tangents follow Kochanek and Bartels, with their correction for keys unevenly spaced in
// time. For the span k0 -> k1 (lengths: dp before k0, d of the span, dn after k1):
//   outgoing at k0 = d/(dp+d) * [ (1-t)(1+c)(1+b) (v0-vp) + (1-t)(1-c)(1-b) (v1-v0) ]
//   incoming at k1 = d/(d+dn) * [ (1-t)(1-c)(1+b) (v1-v0) + (1-t)(1+c)(1-b) (vn-v1) ]
// (t, c, b of k0 resp. k1). At the first or last key the missing neighbour is taken to sit on the
// key itself (dp = 0, vp = v0), which leaves the chord times the remaining factor. Tangents here
// are in value per span, the unit of the Hermite basis on u in [0,1].

double Envelope::outgoing(std::size_t i) const noexcept {
  const EnvelopeKey& k0 = *keys_[i];
  const EnvelopeKey& k1 = *keys_[i + 1];
  const double span = k1.time - k0.time;
  switch (k0.shape) {
    case kShapeHermite:
    case kShapeBezier1D:
      return k0.param[1] * span;
    case kShapeBezier2D:
      return k0.param[2] > 0 ? k0.param[3] / k0.param[2] * span : 0.0;
    default: {
      const double a = (1 - k0.tension) * (1 + k0.continuity) * (1 + k0.bias);
      const double b = (1 - k0.tension) * (1 - k0.continuity) * (1 - k0.bias);
      const double d = k1.value - k0.value;
      if (i == 0) return b * d;
      const EnvelopeKey& kp = *keys_[i - 1];
      return span / (k1.time - kp.time) * (a * (k0.value - kp.value) + b * d);
    }
  }
}

double Envelope::incoming(std::size_t i) const noexcept {
  const EnvelopeKey& k0 = *keys_[i - 1];
  const EnvelopeKey& k1 = *keys_[i];
  const double span = k1.time - k0.time;
  switch (k1.shape) {
    case kShapeHermite:
    case kShapeBezier1D:
      return k1.param[0] * span;
    case kShapeBezier2D:
      return k1.param[0] < 0 ? k1.param[1] / k1.param[0] * span : 0.0;
    default: {
      const double a = (1 - k1.tension) * (1 - k1.continuity) * (1 + k1.bias);
      const double b = (1 - k1.tension) * (1 + k1.continuity) * (1 - k1.bias);
      const double d = k1.value - k0.value;
      if (i + 1 == keys_.size()) return a * d;
      const EnvelopeKey& kn = *keys_[i + 1];
      return span / (kn.time - k0.time) * (a * d + b * (kn.value - k1.value));
    }
  }
}

// A 2-D Bezier span ending at keys_[end]. The start handle is k0's own when k0 is 2-D Bezier too,
// otherwise the one third point of its outgoing tangent (the Bezier form of that Hermite end).
// Handle times are kept inside the span so the curve stays a function of time.
double Envelope::bezier(std::size_t end, LWTime time) const noexcept {
  const EnvelopeKey& k0 = *keys_[end - 1];
  const EnvelopeKey& k1 = *keys_[end];
  const double span = k1.time - k0.time;
  double x1, y1;
  if (k0.shape == kShapeBezier2D) {
    x1 = k0.time + k0.param[2];
    y1 = k0.value + k0.param[3];
  } else {
    x1 = k0.time + span / 3;
    y1 = k0.value + outgoing(end - 1) / 3;
  }
  double x2 = k1.time + k1.param[0];
  const double y2 = k1.value + k1.param[1];
  x1 = std::clamp(x1, k0.time, k1.time);
  x2 = std::clamp(x2, k0.time, k1.time);

  // x(0) <= time <= x(1): bisection always closes in on a crossing, monotone curve or not.
  double lo = 0, hi = 1;
  for (int step = 0; step < 60; ++step) {
    const double mid = 0.5 * (lo + hi);
    if (Cubic(mid, k0.time, x1, x2, k1.time) < time)
      lo = mid;
    else
      hi = mid;
  }
  return Cubic(0.5 * (lo + hi), k0.value, y1, y2, k1.value);
}

double Envelope::interpolate(LWTime time) const noexcept {
  auto after = std::upper_bound(keys_.begin(), keys_.end(), time,
                                [](double t, const std::unique_ptr<EnvelopeKey>& k) { return t < k->time; });
  if (after == keys_.end()) return keys_.back()->value;
  if (after == keys_.begin()) return keys_.front()->value;
  const std::size_t end = static_cast<std::size_t>(after - keys_.begin());
  const EnvelopeKey& k0 = *keys_[end - 1];
  const EnvelopeKey& k1 = *keys_[end];
  const double span = k1.time - k0.time;
  switch (k1.shape) {
    case kShapeStepped:
      return k0.value;
    case kShapeLinear:
      return k0.value + (k1.value - k0.value) * ((time - k0.time) / span);
    case kShapeBezier2D:
      return bezier(end, time);
    default:
      return Hermite((time - k0.time) / span, k0.value, k1.value, outgoing(end - 1), incoming(end));
  }
}

// Slopes (value per second) of the curve where it leaves the first and reaches the last key,
// for the Linear behaviours.
double Envelope::slopeAtFirst() const noexcept {
  const EnvelopeKey& k0 = *keys_[0];
  const EnvelopeKey& k1 = *keys_[1];
  const double span = k1.time - k0.time;
  const double chord = (k1.value - k0.value) / span;
  switch (k1.shape) {
    case kShapeStepped:
      return 0;
    case kShapeLinear:
      return chord;
    case kShapeBezier2D:
      if (k0.shape == kShapeBezier2D) return k0.param[2] > 0 ? k0.param[3] / k0.param[2] : chord;
      return outgoing(0) / span;
    default:
      return outgoing(0) / span;
  }
}

double Envelope::slopeAtLast() const noexcept {
  const std::size_t last = keys_.size() - 1;
  const EnvelopeKey& k0 = *keys_[last - 1];
  const EnvelopeKey& k1 = *keys_[last];
  const double span = k1.time - k0.time;
  const double chord = (k1.value - k0.value) / span;
  switch (k1.shape) {
    case kShapeStepped:
      return 0;
    case kShapeLinear:
      return chord;
    case kShapeBezier2D:
      return k1.param[0] < 0 ? k1.param[1] / k1.param[0] : chord;
    default:
      return incoming(last) / span;
  }
}

double Envelope::evaluate(LWTime time) const noexcept {
  if (keys_.empty()) return 0;
  const EnvelopeKey& first = *keys_.front();
  const EnvelopeKey& last = *keys_.back();
  if (keys_.size() == 1 || std::isnan(time)) return first.value;

  const bool before = time < first.time;
  if (!before && time <= last.time) return interpolate(time);

  const int behavior = before ? pre_ : post_;
  switch (behavior) {
    case kBehaviorReset:
      return 0;
    case kBehaviorLinear:
      return before ? first.value + slopeAtFirst() * (time - first.time)
                    : last.value + slopeAtLast() * (time - last.time);
    case kBehaviorRepeat:
    case kBehaviorOscillate:
    case kBehaviorOffsetRepeat: {
      // Fold the time into the primary interval; cycle 0 is the interval itself.
      const double range = last.time - first.time;
      const double cycle = std::floor((time - first.time) / range);
      if (!std::isfinite(cycle)) return before ? first.value : last.value;
      double local = std::clamp(time - first.time - cycle * range, 0.0, range);
      if (behavior == kBehaviorOscillate && std::fmod(cycle, 2.0) != 0) local = range - local;
      const double offset = behavior == kBehaviorOffsetRepeat ? cycle * (last.value - first.value) : 0.0;
      return interpolate(first.time + local) + offset;
    }
    default:  // Constant
      return before ? first.value : last.value;
  }
}

}  // namespace lwhost
