#pragma once

#include <lwenvel.h>
#include <lwvparm.h>

#include <memory>
#include <string>
#include <vector>

#include "lwhost/ChannelGroup.h"
#include "lwhost/Envelope.h"
#include "lwhost/VParm.h"

namespace lwhost {

class Host;

// The host's animation services: the channel tree, envelopes ("Animation Envelopes") and
// animatable parameters ("LWVParmFuncs 2").
//
// Every group, envelope and parameter a plug-in creates is owned here until the plug-in
// destroys it or the component goes; handles are the objects' addresses. Service functions
// check each handle against what is alive before using it, so a stale or foreign handle fails
// instead of crashing (unless its memory already went to a new object of the same kind). The read-only queries a plug-in may make per sample (evaluate, getVal,
// getState, getEnv, getTex) only refuse null: they must not search or lock.
// Faults a plug-in author should hear about are kept in problems().
// Nobody is told when the component itself goes: the modules listening may be gone already.
class Animation {
 public:
  // Attaches to the host and serves both globals there; the host must outlive it.
  explicit Animation(Host& host);
  ~Animation();
  Animation(const Animation&) = delete;
  Animation& operator=(const Animation&) = delete;

  const LWEnvelopeFuncs* envelopeFuncs() const { return &envelopeFuncs_; }
  const LWVParmFuncs* vparmFuncs() const { return &vparmFuncs_; }

  // The channel tree.
  ChannelGroup* root() { return root_.get(); }
  // A group by its names from the root, joined by '/' ("" is the root); null if missing.
  ChannelGroup* findGroup(const std::string& path) const;
  // A channel by group path and channel name ("Group/Sub/Name.R"); null if missing.
  Envelope* findChannel(const std::string& path) const;
  // A null parent is the scene root.
  ChannelGroup* createGroup(ChannelGroup* parent, const std::string& name);
  // What the group still holds is detached, not destroyed: its owners may still use it.
  bool destroyGroup(ChannelGroup* group);

  // A null group is the scene root.
  Envelope* createEnvelope(ChannelGroup* group, const std::string& name, int type);
  // Tells its listeners (LWEEVNT_DESTROY) once it is gone; a parameter's channel loses it.
  bool destroyEnvelope(Envelope* envelope);

  VParm* createParameter(int envType, int texType);
  bool destroyParameter(VParm* parameter);
  // Parameters set up in this group, in creation order.
  std::vector<VParm*> parameters(const ChannelGroup* group) const;
  std::size_t parameterCount() const { return parameters_.size(); }

  // Handle to object, or null when the handle is not alive here. A null group handle is the root.
  ChannelGroup* group(LWChanGroupID id) const;
  Envelope* envelope(LWEnvelopeID id) const;
  VParm* parameter(LWVParmID id) const;

  // Misuse and malformed data met so far, one line each.
  const std::vector<std::string>& problems() const { return problems_; }
  void note(const std::string& problem);

 private:
  friend class VParm;

  // A null group here means detached: listed nowhere.
  Envelope* newEnvelope(ChannelGroup* group, const std::string& name, int type);
  void place(Envelope* envelope, ChannelGroup* group, const std::string& name);
  void unplace(Envelope* envelope);

  Host& host_;
  LWEnvelopeFuncs envelopeFuncs_;
  LWVParmFuncs vparmFuncs_;
  std::unique_ptr<ChannelGroup> root_;
  std::vector<std::unique_ptr<ChannelGroup>> groups_;
  std::vector<std::unique_ptr<Envelope>> envelopes_;
  std::vector<std::unique_ptr<VParm>> parameters_;
  std::vector<std::string> problems_;
  bool closing_ = false;
};

}  // namespace lwhost
