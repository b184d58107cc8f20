/*
 * lwvparm.h -- animatable parameters: a value that may carry envelopes and a texture.
 */
#ifndef LWSDK_VPARM_H
#define LWSDK_VPARM_H

#include <lwtypes.h>
#include <lwio.h>
#include <lwenvel.h>
#include <lwtxtr.h>

#define LWVPARMFUNCS_GLOBAL "LWVParmFuncs 2"

typedef void *LWVParmID;

/* Parameter types; OR a scalar type with LWVPF_VECTOR for three channels. */
#define LWVP_FLOAT 0x10
#define LWVP_PERCENT 0x20
#define LWVP_DIST 0x30
#define LWVP_ANGLE 0x40
#define LWVP_COLOR 0x51 /* already a vector */
#define LWVP_COLORSIMPLE 0x61

#define LWVPF_VECTOR 0x01
/* Channel names of a vector: by type ("Distance.X"), none, or from the parameter name. */
#define LWVPF_VECTOR_DEFAULTNAMES 0x00
#define LWVPF_VECTOR_NONAMES 0x02
#define LWVPF_VECTOR_PARMNAMES 0x04

/* Texture types; NOTXTR makes a parameter without a texture. */
#define LWVPDT_NOTXTR (-1)
#define LWVPDT_VECTOR 0
#define LWVPDT_COLOR 1
#define LWVPDT_PERCENT 2
#define LWVPDT_SCALAR 3
#define LWVPDT_DISPLACEMENT 4

/* State bits: getState reports what exists, setState creates or removes it. */
#define LWVPSF_ENV (1 << 0)
#define LWVPSF_TEX (1 << 1)

typedef enum en_LWVP_EVENTCODES {
  LWVPEC_TXTRACK = 0,
  LWVPEC_TXUPDATE,
  LWVPEC_TXAUTOSIZE, /* eventData: double[3][2] bounding box to fill */
  LWVPEC_ENVTRACK,
  LWVPEC_ENVUPDATE,
  LWVPEC_ENVNEW,
  LWVPEC_ENVOLD,
  LWVPEC_TEXNEW,
  LWVPEC_TEXOLD,
  LWVPEC_ENVRENAME
} en_lwvpec;

typedef int LWVP_EventFunc(LWVParmID vp, void *userData, en_lwvpec eventCode, void *eventData);

typedef struct st_LWVParmFuncs {
  LWVParmID (*create)(int envType, int texType);
  void (*destroy)(LWVParmID vp);
  /* Required after create; envelopes made later go into the group. */
  void (*setup)(LWVParmID vp, const char *channelName, LWChanGroupID group, LWTxtrContextID gc,
                LWVP_EventFunc *eventFunc, const char *pluginName, void *userData);
  LWError (*copy)(LWVParmID to, LWVParmID from);
  LWError (*load)(LWVParmID vp, const LWLoadState *ls);
  LWError (*save)(LWVParmID vp, const LWSaveState *ss);
  /* Always three values; the result is the texture opacity when textured. */
  double (*getVal)(LWVParmID vp, LWTime t, LWMicropolID mp, double *result);
  int (*setVal)(LWVParmID vp, double *value);
  int (*getState)(LWVParmID vp);
  void (*setState)(LWVParmID vp, int state);
  void (*editEnv)(LWVParmID vp);
  void (*editTex)(LWVParmID vp);
  void (*initMP)(LWMicropolID mp);
  void (*getEnv)(LWVParmID vp, LWEnvelopeID envlist[3]);
  LWTextureID (*getTex)(LWVParmID vp);
} LWVParmFuncs;

#endif
