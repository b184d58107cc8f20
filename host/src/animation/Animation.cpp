#include "lwhost/Animation.h"

#include <algorithm>
#include <cstdio>

#include "ServiceTables.h"
#include "lwhost/Host.h"

namespace lwhost {

namespace {

template <class T>
auto Find(const std::vector<std::unique_ptr<T>>& owned, const void* handle) {
  return std::find_if(owned.begin(), owned.end(), [handle](const std::unique_ptr<T>& p) { return p.get() == handle; });
}

template <class T>
void Erase(std::vector<T*>& list, const T* item) {
  list.erase(std::remove(list.begin(), list.end(), item), list.end());
}

std::string Hex(unsigned value) {
  char text[16];
  std::snprintf(text, sizeof text, "%X", value);
  return text;
}

// Problems beyond this many are dropped: a runaway plug-in must not eat the memory.
constexpr std::size_t kMaxProblems = 1000;

}  // namespace

Animation::Animation(Host& host) : host_(host), root_(std::make_unique<ChannelGroup>(nullptr, "")) {
  FillEnvelopeFuncs(envelopeFuncs_);
  FillVParmFuncs(vparmFuncs_);
  host_.attach<Animation>(this);
  host_.globals().provide(LWENVELOPEFUNCS_GLOBAL, &envelopeFuncs_);
  host_.globals().provide(LWVPARMFUNCS_GLOBAL, &vparmFuncs_);
}

Animation::~Animation() {
  closing_ = true;
  host_.globals().provide(LWENVELOPEFUNCS_GLOBAL, nullptr);
  host_.globals().provide(LWVPARMFUNCS_GLOBAL, nullptr);
  host_.detach<Animation>(this);
  parameters_.clear();
  envelopes_.clear();
  groups_.clear();
  root_.reset();
}

void Animation::note(const std::string& problem) {
  if (problems_.size() < kMaxProblems)
    problems_.push_back(problem);
  else if (problems_.size() == kMaxProblems)
    problems_.push_back("(further problems not kept)");
}

// ---- groups -----------------------------------------------------------------------------------

ChannelGroup* Animation::group(LWChanGroupID id) const {
  if (!id || id == root_.get()) return root_.get();
  auto it = Find(groups_, id);
  return it == groups_.end() ? nullptr : it->get();
}

ChannelGroup* Animation::findGroup(const std::string& path) const {
  ChannelGroup* at = root_.get();
  std::size_t start = 0;
  while (at && start < path.size()) {
    std::size_t slash = path.find('/', start);
    if (slash == std::string::npos) slash = path.size();
    at = at->group(path.substr(start, slash - start));
    start = slash + 1;
  }
  return at;
}

Envelope* Animation::findChannel(const std::string& path) const {
  const std::size_t slash = path.rfind('/');
  ChannelGroup* g = slash == std::string::npos ? root_.get() : findGroup(path.substr(0, slash));
  return g ? g->channel(slash == std::string::npos ? path : path.substr(slash + 1)) : nullptr;
}

ChannelGroup* Animation::createGroup(ChannelGroup* parent, const std::string& name) {
  if (!parent) parent = root_.get();
  groups_.push_back(std::make_unique<ChannelGroup>(parent, name));
  ChannelGroup* made = groups_.back().get();
  parent->groups_.push_back(made);
  return made;
}

bool Animation::destroyGroup(ChannelGroup* group) {
  auto it = Find(groups_, group);
  if (it == groups_.end()) return false;
  if (!group->groups_.empty() || !group->channels_.empty())
    note("channel group \"" + group->path() + "\" destroyed while holding " + std::to_string(group->groups_.size()) +
         " group(s) and " + std::to_string(group->channels_.size()) + " channel(s); they are detached");
  for (ChannelGroup* child : group->groups_) child->parent_ = nullptr;
  for (Envelope* channel : group->channels_) channel->group_ = nullptr;
  for (const auto& p : parameters_)
    if (p->group_ == group) p->group_ = nullptr;
  if (group->parent_) Erase(group->parent_->groups_, group);
  groups_.erase(it);
  return true;
}

// ---- envelopes --------------------------------------------------------------------------------

Envelope* Animation::envelope(LWEnvelopeID id) const {
  auto it = Find(envelopes_, id);
  return it == envelopes_.end() ? nullptr : it->get();
}

Envelope* Animation::createEnvelope(ChannelGroup* group, const std::string& name, int type) {
  return newEnvelope(group ? group : root_.get(), name, type);
}

Envelope* Animation::newEnvelope(ChannelGroup* group, const std::string& name, int type) {
  envelopes_.push_back(std::make_unique<Envelope>(nullptr, name, type));
  Envelope* made = envelopes_.back().get();
  place(made, group, name);
  return made;
}

void Animation::place(Envelope* envelope, ChannelGroup* group, const std::string& name) {
  unplace(envelope);
  envelope->name_ = name;
  envelope->group_ = group;
  if (group) group->channels_.push_back(envelope);
}

void Animation::unplace(Envelope* envelope) {
  if (envelope->group_) Erase(envelope->group_->channels_, envelope);
  envelope->group_ = nullptr;
}

bool Animation::destroyEnvelope(Envelope* envelope) {
  auto it = Find(envelopes_, envelope);
  if (it == envelopes_.end()) return false;
  if (VParm* owner = envelope->parameter_) owner->forget(envelope);
  unplace(envelope);
  const auto listeners = envelope->listeners_;
  envelopes_.erase(it);
  // LightWave tells listeners after the fact; the id no longer names anything.
  if (!closing_)
    for (const auto& [func, data] : listeners) func(data, envelope, LWEEVNT_DESTROY, nullptr);
  return true;
}

// ---- parameters -------------------------------------------------------------------------------

VParm* Animation::parameter(LWVParmID id) const {
  auto it = Find(parameters_, id);
  return it == parameters_.end() ? nullptr : it->get();
}

VParm* Animation::createParameter(int envType, int texType) {
  const int base = envType & 0xF0;
  if (base < LWVP_FLOAT || base > (LWVP_COLORSIMPLE & 0xF0)) {
    note("parameter type 0x" + Hex(static_cast<unsigned>(envType)) + " is not a LWVP_* type");
    return nullptr;
  }
  parameters_.push_back(std::make_unique<VParm>(*this, envType, texType));
  return parameters_.back().get();
}

bool Animation::destroyParameter(VParm* parameter) {
  auto it = Find(parameters_, parameter);
  if (it == parameters_.end()) return false;
  parameter->dropEnvelopes();
  // Its listeners may have run plug-in code; look again before erasing.
  it = Find(parameters_, parameter);
  if (it != parameters_.end()) parameters_.erase(it);
  return true;
}

std::vector<VParm*> Animation::parameters(const ChannelGroup* group) const {
  std::vector<VParm*> found;
  for (const auto& p : parameters_)
    if (p->isSetUp() && p->group() == group) found.push_back(p.get());
  return found;
}

}  // namespace lwhost
