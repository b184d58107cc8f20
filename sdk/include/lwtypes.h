/*
 * lwtypes.h -- scalar and handle types shared by every LightWave host interface.
 * Declared for Vorn from the published interface; names and layouts match the SDK.
 */
#ifndef LWSDK_TYPES_H
#define LWSDK_TYPES_H

#include <stddef.h>

typedef void *LWImageID;
typedef float LWBufferValue;
typedef void *LWPixmapID;
typedef void *LWTextureID;
typedef void *NodeEditorID;

typedef int LWFrame;
typedef double LWTime;

typedef float LWFVector[3];
typedef double LWDVector[3];
typedef float LWFMatrix3[3][3];
typedef float LWFMatrix4[4][4];
typedef double LWDMatrix3[3][3];
typedef double LWDMatrix4[4][4];

/* Four characters packed big-endian, the first in the top byte. */
typedef unsigned int LWID;
#define LWID_(a, b, c, d) \
  ((((unsigned int)(a)) << 24) | (((unsigned int)(b)) << 16) | (((unsigned int)(c)) << 8) | ((unsigned int)(d)))

typedef int LWCommandCode;
typedef void *LWChannelID;
typedef void *LWInstance;
typedef const char *LWError; /* NULL means no error */

/* Item ids are pointer sized but carry 32 bits; the file I/O has no 64-bit integer. */
#define PTR2INT(x) ((int)(size_t)(x))
#define PTR2UINT(x) ((unsigned int)(size_t)(x))
#define INT2PTR(x) ((void *)(size_t)(x))
#define UINT2PTR(x) ((void *)(size_t)(x))
#define LWITEMID2INT(x) PTR2INT(x)
#define LWITEMID2UINT(x) PTR2UINT(x)
#define INT2LWITEMID(x) ((LWItemID)INT2PTR(x))
#define UINT2LWITEMID(x) ((LWItemID)UINT2PTR(x))

#endif
