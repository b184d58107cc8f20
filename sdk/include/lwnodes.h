/*
 * lwnodes.h -- shading nodes: the handler class, the per-sample access record and the
 * node, input, output, utility and drawing services.
 */
#ifndef LWSDK_SURFNODES_H
#define LWSDK_SURFNODES_H

#include <lwserver.h>
#include <lwrender.h>

#define LWNODE_HCLASS "NodeHandler"
#define LWNODE_ICLASS "NodeInterface"
#define LWNODE_GCLASS "NodeGizmo"
#define LWNODECLASS_VERSION 2

#define LWNODEFUNCS_GLOBAL "NodeFuncs"
#define LWNODEINPUTFUNCS_GLOBAL "NodeInputFuncs 2"
#define LWNODEOUTPUTFUNCS_GLOBAL "NodeOutputFuncs"
#define LWNODEUTILITYFUNCS_GLOBAL "NodeUtilityFuncs"
#define LWNODEDRAWFUNCS_GLOBAL "NodeDrawFuncs"

typedef enum { NPT_RENDER = 0, NPT_CUSTOM, NPT_OFF } NodePreviewType;

/* Value buffers: colour and vector double[3], scalar double, integer int, material LWNodalMaterial. */
typedef enum {
  NOT_COLOR = 1,
  NOT_SCALAR,
  NOT_VECTOR,
  NOT_INTEGER,
  NOT_FUNCTION,
  NOT_MATERIAL
} ConnectionType;
#define IOTypeCount 6

typedef void *NodeInputID;
typedef void *NodeOutputID;
typedef void *NodeID;
typedef void *NodeData;
typedef void *NodeValue;

/* One shading sample.  Positions and normals are world space unless the name says object. */
typedef struct LWNodalAccess_t {
  int sx, sy; /* pixel, top-left origin */
  LWDVector oPos, wPos;
  LWDVector gNorm;  /* geometric */
  LWDVector wNorm;  /* smoothed and bumped */
  LWDVector wNorm0; /* smoothed, no bump */
  LWDVector raySource;
  double rayLength;
  double spotSize;
  double cosine;
  double bumpHeight;
  double oXfrm[9], wXfrm[9]; /* object to world, world to object; row-major 3x3 */

  /* NULL where the context offers no such service. */
  LWIlluminateFunc *illuminate;
  LWIlluminateSampleFunc *illuminateSample;
  LWRayTraceFunc *rayTrace;
  LWRayCastFunc *rayCast;
  LWRayShadeFunc *rayShade;
  LWRayTraceModeFunc *rayTraceMode;

  int bounces; /* ray recursion level */
  LWItemID sourceID;
  LWItemID objID;
  int polNum;
  LWPntID verts[4];
  float weights[4];
  float vertsWPos[4][3];
  LWPolID polygon;

  double incomingEta;
  int ResourceContextIndex; /* render thread */
  int flags;                /* LWRT_* */
  RandomFloatData randomData;
  LWRandomFloatFunc *randomFloat;
  LWIlluminateNormalFunc *illuminateNormal;
  LWIlluminateSampleNormalFunc *illuminateSampleNormal;

  /* 9.5 and later */
  double subsx, subsy;
  LWDVector rayDir;

  /* 9.6 and later */
  LWRayTraceDataFunc *rayTraceData;
  LWRayTraceShadeFunc *rayTraceShade;
  LWRenderData render;
  LWBufferGetValFunc *getVal;
  LWBufferSetValFunc *setVal;
} LWNodalAccess;

typedef struct LWNodalMaterial_t {
  LWDVector diffuse;
  LWDVector specular;
  LWDVector reflection;
  LWDVector refraction;
  double transparency;
} LWNodalMaterial;

/* Drawing into a node's preview area. */
typedef struct LWNodeDrawFuncs_t {
  void (*drawPixel)(NodeID node, int c, int x, int y);
  void (*drawRGBPixel)(NodeID node, int r, int g, int b, int x, int y);
  void (*drawLine)(NodeID node, int c, int x, int y, int x2, int y2);
  void (*drawBox)(NodeID node, int c, int x, int y, int w, int h);
  void (*drawRGBBox)(NodeID node, int r, int g, int b, int x, int y, int w, int h);
  int (*textWidth)(NodeID node, char *text);
  int (*textHeight)(NodeID node, char *text);
  void (*drawText)(NodeID node, char *text, int c, int x, int y);
  void (*blitNode)(NodeID node);
} LWNodeDrawFuncs;

typedef enum LWNodalEvent_t {
  NIE_CONNECT = 0,
  NIE_DISCONNECT,
  NIE_INPUTNODEDESTROY /* the node feeding this input went away */
} LWNodalEvent;

/* The type is the connected output's for NIE_CONNECT, else 0. */
typedef int NodeInputEvent(void *userData, NodeInputID input, LWNodalEvent event, ConnectionType type);

/* Bits returned by LWNodeHandler.flags. */
#define NF_TRANSP (1 << 0) /* a material that may be transparent */

typedef struct st_LWNodeHandler {
  LWInstanceFuncs *inst;
  LWItemFuncs *item;
  LWRenderFuncs *rend;
  void (*evaluate)(LWInstance inst, LWNodalAccess *na, NodeOutputID output, NodeValue value);
  void (*customPreview)(LWInstance inst, int width, int height); /* for NPT_CUSTOM */
  unsigned int (*flags)(LWInstance inst);                         /* class version 2 */
} LWNodeHandler;

/* Indices are 1-based; getIndex answers 0 for a connector of another node. */
typedef struct LWNodeInputFuncs_t {
  NodeInputID (*create)(NodeID node, ConnectionType type, const char *name, NodeInputEvent *event);
  void (*destroy)(NodeID node, NodeInputID input);
  int (*evaluate)(NodeInputID input, LWNodalAccess *na, void *value);
  int (*check)(NodeInputID input); /* connected? */
  NodeInputID (*first)(NodeID node);
  NodeInputID (*next)(NodeInputID input);
  NodeInputID (*previous)(NodeInputID input);
  int (*numInputs)(NodeID node);
  NodeInputID (*byIndex)(NodeID node, int index);
  int (*getIndex)(NodeID node, NodeInputID input);
  void (*disconnect)(NodeID node, NodeInputID input);
  NodeID (*node)(NodeInputID input);
} LWNodeInputFuncs;

typedef struct LWNodeOutputFuncs_t {
  NodeOutputID (*create)(NodeID node, ConnectionType type, const char *name);
  void (*destroy)(NodeID node, NodeOutputID output);
  void (*setValue)(NodeValue value, void *data);
  void *(*getValue)(NodeValue value);
  ConnectionType (*getType)(NodeValue value);
  NodeOutputID (*first)(NodeID node);
  NodeOutputID (*next)(NodeOutputID output);
  NodeOutputID (*previous)(NodeOutputID output);
  int (*numInputs)(NodeID node); /* counts outputs, despite the name */
  NodeOutputID (*byIndex)(NodeID node, int index);
  int (*getIndex)(NodeID node, NodeOutputID output);
  NodeID (*node)(NodeOutputID output);
} LWNodeOutputFuncs;

typedef struct LWNodeFuncs_t {
  const char *(*nodeName)(NodeID node); /* editor name with its number, "Texture (1)" */
  const char *(*serverUserName)(NodeID node);
  LWChanGroupID (*chanGrp)(NodeID node);
  void (*setNodeColor)(NodeID node, int rgb[3]);
  void (*setNodeColor3)(NodeID node, int r, int g, int b);
  void (*setNodePreviewType)(NodeID node, NodePreviewType type);
  void (*UpdateNodePreview)(NodeID node);
} LWNodeFuncs;

typedef enum {
  Blend_Normal,
  Blend_Additive,
  Blend_Subtractive,
  Blend_Multiply,
  Blend_Screen,
  Blend_Darken,
  Blend_Lighten,
  Blend_Difference,
  Blend_Negative,
  Blend_ColorDodge,
  Blend_ColorBurn,
  Blend_Red,
  Blend_Green,
  Blend_Blue
} BlendingMode;

typedef struct LWNodeUtilityFuncs_t {
  void (*Blend)(LWDVector result, LWDVector bg, LWDVector fg, double alpha, BlendingMode mode);
  void (*NodeAutosize)(NodeID node, LWDVector scale, LWDVector position);
  void (*PlanarMapping)(LWDVector tPos, int axis, double *u, double *v);
  void (*SphericalMapping)(LWDVector tPos, int axis, double *u, double *v);
  void (*CylindricalMapping)(LWDVector tPos, int axis, double *u, double *v);
  void (*CubicMapping)(LWDVector tPos, int axis, double *u, double *v);
  void (*FrontMapping)(LWDVector tPos, double pixelAspect, double *u, double *v, double cameraMatrix[4][4]);
  void (*ReflectionMapping)(double seamAngle, LWDVector direction, double *u, double *v);
  int (*UVMapping)(const char *UVMapName, LWNodalAccess *na, double *u, double *v);
  void (*BuildCameraMatrix)(LWTime t, LWItemID cameraID, double cameraMatrix[4][4]);
} LWNodeUtilityFuncs;

#endif
