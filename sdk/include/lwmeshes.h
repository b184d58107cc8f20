/*
 * lwmeshes.h -- mesh element handles.  Only the opaque ids the shading records carry.
 */
#ifndef LWSDK_MESHES_H
#define LWSDK_MESHES_H

#include <stddef.h>
#include <lwtypes.h>

typedef struct st_GCoreVertex *LWPntID;
typedef struct st_GCoreEdge *LWEdgeID;
typedef struct st_GCorePolygon *LWPolID;

typedef struct st_LWMeshInfo *LWMeshInfoID;

#endif
