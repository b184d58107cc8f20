// "Animation Envelopes": the C table over the component's channel tree and envelopes.
#include <string>

#include "CEntryGuard.h"
#include "animation/CurrentAnimation.h"
#include "ServiceTables.h"

namespace lwhost {

namespace {

const char* const kUnknownEnvelope = "not an envelope of this host";
const char* const kFailed = "the host failed inside Animation Envelopes";

// The envelope behind a handle, or null (and a note) when the handle is null or not alive.
Envelope* Live(LWEnvelopeID id, const char* function) {
  Animation* animation = CurrentAnimation();
  if (!animation) return nullptr;
  Envelope* envelope = animation->envelope(id);
  if (!envelope) animation->note(std::string("Animation Envelopes ") + function + ": " + kUnknownEnvelope);
  return envelope;
}

LWEnvelopeID Create(LWChanGroupID groupID, const char* name, int type) {
  return Guarded<LWEnvelopeID>(nullptr, [&]() -> LWEnvelopeID {
    Animation* animation = CurrentAnimation();
    if (!animation) return nullptr;
    ChannelGroup* group = animation->group(groupID);
    if (!group) {
      animation->note("Animation Envelopes create: not a channel group of this host");
      return nullptr;
    }
    return animation->createEnvelope(group, name ? name : "", type);
  });
}

void Destroy(LWEnvelopeID id) {
  Guarded([&] {
    if (Envelope* envelope = Live(id, "destroy")) CurrentAnimation()->destroyEnvelope(envelope);
  });
}

LWChanGroupID CreateGroup(LWChanGroupID parentID, const char* name) {
  return Guarded<LWChanGroupID>(nullptr, [&]() -> LWChanGroupID {
    Animation* animation = CurrentAnimation();
    if (!animation) return nullptr;
    ChannelGroup* parent = animation->group(parentID);
    if (!parent) {
      animation->note("Animation Envelopes createGroup: the parent is not a channel group of this host");
      return nullptr;
    }
    return animation->createGroup(parent, name ? name : "");
  });
}

void DestroyGroup(LWChanGroupID id) {
  Guarded([&] {
    Animation* animation = CurrentAnimation();
    if (animation && id && !animation->destroyGroup(animation->group(id)))
      animation->note("Animation Envelopes destroyGroup: not a channel group of this host (or the scene root)");
  });
}

LWError Copy(LWEnvelopeID to, LWEnvelopeID from) {
  return Guarded<LWError>(kFailed, [&]() -> LWError {
    Envelope* target = Live(to, "copy");
    Envelope* source = Live(from, "copy");
    if (!target || !source) return kUnknownEnvelope;
    target->copyFrom(*source);
    return nullptr;
  });
}

LWError Load(LWEnvelopeID id, const LWLoadState* state) {
  return Guarded<LWError>(kFailed, [&]() -> LWError {
    Envelope* envelope = Live(id, "load");
    if (!envelope) return kUnknownEnvelope;
    std::vector<std::string> problems;
    LWError error = envelope->load(state, &problems);
    for (const std::string& p : problems) CurrentAnimation()->note(p);
    return error;
  });
}

LWError Save(LWEnvelopeID id, const LWSaveState* state) {
  return Guarded<LWError>(kFailed, [&]() -> LWError {
    Envelope* envelope = Live(id, "save");
    return envelope ? envelope->save(state) : kUnknownEnvelope;
  });
}

// Per sample: no search, no lock.
double Evaluate(LWEnvelopeID id, LWTime time) {
  return id ? static_cast<const Envelope*>(id)->evaluate(time) : 0.0;
}

int Edit(LWChanGroupID, LWEnvelopeID, int, void*) { return 0; }  // no graph editor here

int EnvAge(LWEnvelopeID id) {
  return Guarded(0, [&] {
    Envelope* envelope = Live(id, "envAge");
    return envelope ? envelope->age() : 0;
  });
}

LWEnvKeyframeID CreateKey(LWEnvelopeID id, LWTime time, double value) {
  return Guarded<LWEnvKeyframeID>(nullptr, [&]() -> LWEnvKeyframeID {
    Envelope* envelope = Live(id, "createKey");
    return envelope ? const_cast<EnvelopeKey*>(envelope->addKey(time, value)) : nullptr;
  });
}

void DestroyKey(LWEnvelopeID id, LWEnvKeyframeID key) {
  Guarded([&] {
    Envelope* envelope = Live(id, "destroyKey");
    if (envelope && !envelope->removeKey(static_cast<const EnvelopeKey*>(key)))
      CurrentAnimation()->note("Animation Envelopes destroyKey: not a key of envelope \"" + envelope->name() + "\"");
  });
}

LWEnvKeyframeID FindKey(LWEnvelopeID id, LWTime time) {
  return Guarded<LWEnvKeyframeID>(nullptr, [&]() -> LWEnvKeyframeID {
    Envelope* envelope = Live(id, "findKey");
    return envelope ? const_cast<EnvelopeKey*>(envelope->keyAt(time)) : nullptr;
  });
}

LWEnvKeyframeID NextKey(LWEnvelopeID id, LWEnvKeyframeID key) {
  return Guarded<LWEnvKeyframeID>(nullptr, [&]() -> LWEnvKeyframeID {
    Envelope* envelope = Live(id, "nextKey");
    return envelope ? const_cast<EnvelopeKey*>(envelope->next(static_cast<const EnvelopeKey*>(key))) : nullptr;
  });
}

LWEnvKeyframeID PrevKey(LWEnvelopeID id, LWEnvKeyframeID key) {
  return Guarded<LWEnvKeyframeID>(nullptr, [&]() -> LWEnvKeyframeID {
    Envelope* envelope = Live(id, "prevKey");
    return envelope ? const_cast<EnvelopeKey*>(envelope->previous(static_cast<const EnvelopeKey*>(key))) : nullptr;
  });
}

// Key attributes are doubles, except the shape, an int.
int KeySet(LWEnvelopeID id, LWEnvKeyframeID key, LWKeyTag tag, void* value) {
  return Guarded(0, [&] {
    Envelope* envelope = Live(id, "keySet");
    if (!envelope || !value) return 0;
    const double v = tag == LWKEY_SHAPE ? *static_cast<const int*>(value) : *static_cast<const double*>(value);
    return envelope->setAttribute(static_cast<const EnvelopeKey*>(key), tag, v) ? 1 : 0;
  });
}

int KeyGet(LWEnvelopeID id, LWEnvKeyframeID key, LWKeyTag tag, void* value) {
  return Guarded(0, [&] {
    Envelope* envelope = Live(id, "keyGet");
    double v = 0;
    if (!envelope || !value || !envelope->attribute(static_cast<const EnvelopeKey*>(key), tag, &v)) return 0;
    if (tag == LWKEY_SHAPE)
      *static_cast<int*>(value) = static_cast<int>(v);
    else
      *static_cast<double*>(value) = v;
    return 1;
  });
}

int SetEnvEvent(LWEnvelopeID id, LWEnvEventFunc func, void* data) {
  return Guarded(0, [&] {
    Envelope* envelope = Live(id, "setEnvEvent");
    return envelope ? envelope->setListener(func, data) : 0;
  });
}

// The group argument adds nothing: an envelope knows its group.
int EgSet(LWEnvelopeID id, LWChanGroupID, int tag, void* value) {
  return Guarded(0, [&] {
    Envelope* envelope = Live(id, "egSet");
    if (!envelope || !value) return 0;
    const int v = *static_cast<const int*>(value);
    switch (tag) {
      case LWENVTAG_VISIBLE:
        envelope->setVisible(v != 0);
        return 1;
      case LWENVTAG_PREBEHAVE:
        return envelope->setBehaviors(v, envelope->postBehavior()) ? 1 : 0;
      case LWENVTAG_POSTBEHAVE:
        return envelope->setBehaviors(envelope->preBehavior(), v) ? 1 : 0;
      default:  // the key count can only be read
        return 0;
    }
  });
}

int EgGet(LWEnvelopeID id, LWChanGroupID, int tag, void* value) {
  return Guarded(0, [&] {
    Envelope* envelope = Live(id, "egGet");
    if (!envelope || !value) return 0;
    int* out = static_cast<int*>(value);
    switch (tag) {
      case LWENVTAG_VISIBLE: *out = envelope->visible() ? 1 : 0; return 1;
      case LWENVTAG_PREBEHAVE: *out = envelope->preBehavior(); return 1;
      case LWENVTAG_POSTBEHAVE: *out = envelope->postBehavior(); return 1;
      case LWENVTAG_KEYCOUNT: *out = static_cast<int>(envelope->keyCount()); return 1;
      default: return 0;
    }
  });
}

}  // namespace

void FillEnvelopeFuncs(LWEnvelopeFuncs& t) {
  t.create = &Create;
  t.destroy = &Destroy;
  t.createGroup = &CreateGroup;
  t.destroyGroup = &DestroyGroup;
  t.copy = &Copy;
  t.load = &Load;
  t.save = &Save;
  t.evaluate = &Evaluate;
  t.edit = &Edit;
  t.envAge = &EnvAge;
  t.createKey = &CreateKey;
  t.destroyKey = &DestroyKey;
  t.findKey = &FindKey;
  t.nextKey = &NextKey;
  t.prevKey = &PrevKey;
  t.keySet = &KeySet;
  t.keyGet = &KeyGet;
  t.setEnvEvent = &SetEnvEvent;
  t.egSet = &EgSet;
  t.egGet = &EgGet;
}

}  // namespace lwhost
