/*
 * lwshader.h -- the classic surface shader's spot record. The host fills one for a node's
 * rayShade call: the spot a ray hits and its surface, with nothing lit yet.
 */
#ifndef LWSDK_SHADER_H
#define LWSDK_SHADER_H

#include <lwrender.h>

#define LWSHADER_HCLASS "ShaderHandler"
#define LWSHADER_ICLASS "ShaderInterface"
#define LWSHADER_GCLASS "ShaderGizmo"
#define LWSHADER_VERSION 6

typedef struct st_LWShaderAccess {
  /* The spot: read only for a shader. */
  int sx, sy;
  double oPos[3], wPos[3];
  double gNorm[3];
  double spotSize;
  double raySource[3];
  double rayLength;
  double cosine;
  double oXfrm[9], wXfrm[9];
  LWItemID objID;
  int polNum;

  /* The surface: a shader may change these. */
  double wNorm[3];
  double color[3];
  double luminous;
  double diffuse;
  double specular;
  double mirror;
  double transparency;
  double eta;
  double roughness;

  LWIlluminateFunc *illuminate;
  LWRayTraceFunc *rayTrace;
  LWRayCastFunc *rayCast;
  LWRayShadeFunc *rayShade;

  int flags;
  int bounces;
  LWItemID sourceID;
  double wNorm0[3];
  double bumpHeight;
  double translucency;
  double colorHL;
  double colorFL;
  double addTransparency;
  double difSharpness;

  LWPntID verts[4];
  float weights[4];
  float vertsWPos[4][3];
  LWPolID polygon;

  double replacement_percentage;
  double replacement_color[3];
  double reflectionBlur;
  double refractionBlur;

  LWRayTraceModeFunc *rayTraceMode;
  double incomingEta;
  int ResourceContextIndex;
  double diffuse_shade[3];
  double specular_shade[3];
  double refract_shade[3];
  double reflect_shade[3];

  LWIlluminateSampleFunc *illuminateSample;
  RandomFloatData randomData;
  LWRandomFloatFunc *randomFloat;

  LWIlluminateNormalFunc *illuminateNormal;
  LWIlluminateSampleNormalFunc *illuminateSampleNormal;

  double subsx, subsy;
  double bumpDropoff;

  LWDVector rayDir;

  LWRayTraceDataFunc *rayTraceData;
  LWRayTraceShadeFunc *rayTraceShade;
  LWRenderData render;

  LWBufferGetValFunc *getVal;
  LWBufferSetValFunc *setVal;
} LWShaderAccess;

#endif
