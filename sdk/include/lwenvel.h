/*
 * lwenvel.h -- animation envelopes and channel groups ("Animation Envelopes").
 */
#ifndef LWSDK_ENVEL_H
#define LWSDK_ENVEL_H

#include <lwtypes.h>
#include <lwio.h>

typedef void *LWEnvelopeID;
typedef void *LWChanGroupID;
typedef void *LWEnvKeyframeID;

/* Key attributes for keySet/keyGet: doubles, except the shape, which is an int. */
typedef enum {
  LWKEY_VALUE,
  LWKEY_TIME,
  LWKEY_SHAPE, /* 0 TCB, 1 Hermite, 2 1-D Bezier, 3 linear, 4 stepped, 5 2-D Bezier */
  LWKEY_TENSION,
  LWKEY_CONTINUITY,
  LWKEY_BIAS,
  LWKEY_PARAM_0,
  LWKEY_PARAM_1,
  LWKEY_PARAM_2,
  LWKEY_PARAM_3
} LWKeyTag;

/* Envelope types, i.e. the units shown to the user. */
#define LWET_FLOAT 2
#define LWET_DISTANCE 3
#define LWET_PERCENT 4
#define LWET_ANGLE 5

/* Envelope attributes for egSet/egGet; the key count can only be read. */
typedef enum {
  LWENVTAG_VISIBLE,
  LWENVTAG_PREBEHAVE,
  LWENVTAG_POSTBEHAVE,
  LWENVTAG_KEYCOUNT
} LWEnvTag;

typedef enum {
  LWEEVNT_DESTROY,
  LWEEVNT_KEY_INSERT,
  LWEEVNT_KEY_DELETE,
  LWEEVNT_KEY_VALUE,
  LWEEVNT_KEY_TIME,
  LWCEVNT_VALUE, /* channel events only from here ... */
  LWCEVNT_TRACK,
  LWCEVNT_CREATE,
  LWCEVNT_EDITTEST,
  LWEEVNT_RENAME /* ... and the owning group was renamed */
} LWEnvEvent;

typedef int (*LWEnvEventFunc)(void *data, LWEnvelopeID env, LWEnvEvent event, void *eventData);

#define LWENVELOPEFUNCS_GLOBAL "Animation Envelopes"

typedef struct st_LWEnvelopeFuncs {
  LWEnvelopeID (*create)(LWChanGroupID group, const char *name, int type);
  void (*destroy)(LWEnvelopeID env);
  LWChanGroupID (*createGroup)(LWChanGroupID parent, const char *name);
  void (*destroyGroup)(LWChanGroupID group);
  LWError (*copy)(LWEnvelopeID to, LWEnvelopeID from);
  LWError (*load)(LWEnvelopeID env, const LWLoadState *ls);
  LWError (*save)(LWEnvelopeID env, const LWSaveState *ss);
  double (*evaluate)(LWEnvelopeID env, LWTime t);
  int (*edit)(LWChanGroupID group, LWEnvelopeID env, int flags, void *data);
  int (*envAge)(LWEnvelopeID env);
  LWEnvKeyframeID (*createKey)(LWEnvelopeID env, LWTime t, double value);
  void (*destroyKey)(LWEnvelopeID env, LWEnvKeyframeID key);
  LWEnvKeyframeID (*findKey)(LWEnvelopeID env, LWTime t);
  LWEnvKeyframeID (*nextKey)(LWEnvelopeID env, LWEnvKeyframeID key);
  LWEnvKeyframeID (*prevKey)(LWEnvelopeID env, LWEnvKeyframeID key);
  int (*keySet)(LWEnvelopeID env, LWEnvKeyframeID key, LWKeyTag tag, void *value);
  int (*keyGet)(LWEnvelopeID env, LWEnvKeyframeID key, LWKeyTag tag, void *value);
  int (*setEnvEvent)(LWEnvelopeID env, LWEnvEventFunc func, void *data);
  int (*egSet)(LWEnvelopeID env, LWChanGroupID group, int tag, void *value);
  int (*egGet)(LWEnvelopeID env, LWChanGroupID group, int tag, void *value);
} LWEnvelopeFuncs;

#endif
