/*
 * lwtxtr.h -- texture handles.  Only the opaque ids that animatable parameters pass along.
 */
#ifndef LWSDK_TXTR_H
#define LWSDK_TXTR_H

typedef struct st_TxtrLayer *LWTLayerID;
typedef struct st_LWMicropol *LWMicropolID;
typedef struct st_TxtrContext *LWTxtrContextID;

#include <lwrender.h>
#include <lwenvel.h>
#include <lwio.h>

/* Coordinate context of a texture evaluation: every layer, object-space only, world-space only. */
#define TCC_ANY 0
#define TCC_OBJECT 1
#define TCC_WORLD 2

#endif
