/*
 * lwrender.h -- items, item and render handler tables, ray-trace callbacks and the
 * scene-wide information globals (item, scene, time and interface info).
 */
#ifndef LWSDK_RENDER_H
#define LWSDK_RENDER_H

#include <lwtypes.h>
#include <lwhandler.h>
#include <lwenvel.h>
#include <lwmeshes.h>

struct st_LWShaderAccess;

/* ---- Items ---- */

/* Pointer sized, but only the low 32 bits carry information. */
typedef void *LWItemID;
#define LWITEM_NULL ((LWItemID)0)
/* All bits set, whatever the pointer width. */
#define LWITEM_ALL ((LWItemID)~0)

typedef int LWItemType;
#define LWI_OBJECT 0
#define LWI_LIGHT 1
#define LWI_CAMERA 2
#define LWI_BONE 3

typedef int LWItemParam;
#define LWIP_POSITION 1
#define LWIP_RIGHT 2
#define LWIP_UP 3
#define LWIP_FORWARD 4
#define LWIP_ROTATION 5
#define LWIP_SCALING 6
#define LWIP_PIVOT 7
#define LWIP_W_POSITION 8
#define LWIP_W_RIGHT 9
#define LWIP_W_UP 10
#define LWIP_W_FORWARD 11
#define LWIP_PIVOT_ROT 12

/* ---- Ray casting and lighting from inside a shading call ---- */

typedef void *LWRenderData;
typedef void *LWRayData;
typedef void *RandomFloatData;

/* Distances come back as -1.0 on a miss; directions must be unit length. */
typedef double LWRayCastFunc(const LWDVector position, const LWDVector direction);
typedef double LWRayTraceFunc(const LWDVector position, const LWDVector direction, LWDVector color);
typedef double LWRayShadeFunc(const LWDVector position, const LWDVector direction,
                              struct st_LWShaderAccess *sa);
typedef double LWRayTraceModeFunc(const LWDVector position, const LWDVector direction, LWDVector color,
                                  const double eta, const int rtmode);

/* Light reaching a point; direction points from the light to the spot.  0 = not lit. */
typedef int LWIlluminateFunc(LWItemID light, const LWDVector position, LWDVector direction,
                             LWDVector color);
typedef int LWIlluminateNormalFunc(LWItemID light, LWRenderData rd, const LWDVector position,
                                   LWDVector direction, const LWDVector normal_vec, LWDVector color);

/* Called once per light sample. */
typedef int LightSampleFunc(void *data, LWItemID light, const LWDVector dir, const double color[4]);
typedef double LWIlluminateSampleFunc(LWItemID light, const LWDVector pos, LWDVector dir,
                                      LightSampleFunc *sampler, void *data);
typedef double LWIlluminateSampleNormalFunc(LWItemID light, LWRenderData rd, const LWDVector pos,
                                            const LWDVector normal_vec, LightSampleFunc *sampler,
                                            void *data);

typedef void LWBufferGetValFunc(LWRenderData rd, int type, int num, double *vals);
typedef void LWBufferSetValFunc(LWRenderData rd, int type, int num, double *vals);

/* rtmode: one mode in the low byte, OR'ed with flags in the top bits. */
#define RTMODE_DISTANCE 0
#define RTMODE_REFLECTION 1
#define RTMODE_REFRACTION 2
#define RTMODE_DISSOLVE 3
#define RTMODE_SHADOW 4
#define RTMODE_OCCLUSION 5
#define RTMODE_BACKDROP 6
#define RTMODE_OCCLUSION_DEPTH 7
#define RTMODE_MASK 0x000000FF

#define RTFLAG_CAMERA 0x04000000
#define RTFLAG_BACKSHADE 0x08000000
#define RTFLAG_BACKDROP 0x10000000
#define RTFLAG_OBJECT 0x20000000
#define RTFLAG_SAMPLEDRAY 0x40000000
#define RTFLAG_NOPOLYGON 0x80000000

/* The first six members are inputs, the rest are filled by the renderer. */
typedef struct st_LWRayTraceData {
  LWDVector rayStart;
  LWDVector rayDir;
  LWDVector backdrop; /* used with RTFLAG_BACKDROP */
  LWDVector weight;
  double eta;
  int flags;
  LWRayData ray;
  double len;
  LWDVector result;
} LWRayTraceData;

typedef void LWRayTraceDataFunc(LWRenderData rd, LWRayTraceData *data);
typedef void LWRayTraceShadeFunc(LWRayTraceData *data);

typedef float LWRandomFloatFunc(RandomFloatData rd);

/* What kind of ray reached the spot being shaded. */
#define LWRT_SHADOW (1 << 0)
#define LWRT_PREVIEW (1 << 1)
#define LWRT_POLYSIDE (1 << 2) /* back side hit */
#define LWRT_SAMPLEDRAY (1 << 3)
#define LWRT_PREPROCESS (1 << 4) /* radiosity preprocess */
#define LWRT_EXITING (1 << 5)
#define LWRT_DOUBLESIDED (1 << 6)
#define LWRT_FRAME_PREPROCESS (1 << 7)
#define LWRT_RADIOSITY (1 << 8)
#define LWRT_CAMERA (1 << 9)

/* Pseudo lights for illuminate; with these the direction is an input. */
#define LWITEM_RADIOSITY ((LWItemID)0x21000000)
#define LWITEM_CAUSTICS ((LWItemID)0x22000000)

/* ---- Item and render handler tables ---- */

typedef struct st_LWNameChangeData {
  const char *oldName;
  const char *newName;
  LWItemID id;
} LWNameChangeData;

/* Hosts must pre-zero this table: older plug-ins leave changeName untouched. */
typedef struct st_LWItemFuncs {
  const LWItemID *(*useItems)(LWInstance inst);
  void (*changeID)(LWInstance inst, const LWItemID *ids);
  void (*changeName)(LWInstance inst, const LWNameChangeData *names);
} LWItemFuncs;

typedef struct st_LWItemHandler {
  LWInstanceFuncs *inst;
  LWItemFuncs *item;
} LWItemHandler;

#define LWINIT_PREVIEW 0
#define LWINIT_RENDER 1

typedef struct st_LWRenderFuncs {
  LWError (*init)(LWInstance inst, int mode);
  void (*cleanup)(LWInstance inst);
  LWError (*newTime)(LWInstance inst, LWFrame frame, LWTime t);
} LWRenderFuncs;

typedef struct st_LWRenderHandler {
  LWInstanceFuncs *inst;
  LWItemFuncs *item;
  LWRenderFuncs *rend;
} LWRenderHandler;

/* ---- Item info ---- */

#define LWITEMINFO_GLOBAL "LW Item Info 5"

typedef struct st_LWItemInfo {
  LWItemID (*first)(LWItemType type, LWItemID owner);
  LWItemID (*next)(LWItemID item);
  LWItemID (*firstChild)(LWItemID parent);
  LWItemID (*nextChild)(LWItemID parent, LWItemID prevChild);
  LWItemID (*parent)(LWItemID item);
  LWItemID (*target)(LWItemID item);
  LWItemID (*goal)(LWItemID item);
  LWItemType (*type)(LWItemID item);
  const char *(*name)(LWItemID item);
  void (*param)(LWItemID item, LWItemParam which, LWTime t, LWDVector out);
  unsigned int (*limits)(LWItemID item, LWItemParam which, LWDVector min, LWDVector max);
  const char *(*getTag)(LWItemID item, int index);
  void (*setTag)(LWItemID item, int index, const char *tag);
  LWChanGroupID (*chanGroup)(LWItemID item);
  const char *(*server)(LWItemID item, const char *cls, int index);
  unsigned int (*serverFlags)(LWItemID item, const char *cls, int index);
  void (*controller)(LWItemID item, LWItemParam which, int type[3]);
  unsigned int (*flags)(LWItemID item);
  LWTime (*lookAhead)(LWItemID item);
  double (*goalStrength)(LWItemID item, LWTime t);
  void (*stiffness)(LWItemID item, LWItemParam which, LWDVector out);
  unsigned int (*axisLocks)(LWItemID item, LWItemParam which);
  unsigned int (*maxLookSteps)(LWItemID item);
  double (*reliableDistance)(LWItemID item);
  unsigned int (*goalObjective)(LWItemID item);
  double (*ikfkBlending)(LWItemID item, LWTime t);
  unsigned int (*ikInitialState)(LWItemID item);
  LWFrame (*ikInitialStateFrame)(LWItemID item, LWTime t);
  unsigned int (*ikSoft)(LWItemID item, LWTime t, unsigned int *distanceType, double *min, double *max);
  LWItemID (*pole)(LWItemID item);
  LWItemID (*sameItem)(LWItemID item, LWItemParam which);
  double (*sameItemBlend)(LWItemID item, LWItemParam which, LWTime t);
  unsigned int (*sameItemBlendMethod)(LWItemID item, LWItemParam which);
  unsigned int (*sameItemFlags)(LWItemID item, LWItemParam which);
} LWItemInfo;

/* limits() result: which vector components are limited. */
#define LWVECF_0 (1 << 0)
#define LWVECF_1 (1 << 1)
#define LWVECF_2 (1 << 2)

#define LWSRVF_DISABLED (1 << 0)
#define LWSRVF_HIDDEN (1 << 1)

/* controller() kinds per component. */
#define LWMOTCTL_KEYFRAMES 0
#define LWMOTCTL_TARGETING 1
#define LWMOTCTL_ALIGN_TO_VELOCITY 2
#define LWMOTCTL_IK 3
#define LWMOTCTL_ALIGN_TO_PATH 4
#define LWMOTCTL_POLE 5
#define LWMOTCTL_SAMEITEM 6

/* flags() of an item. */
#define LWITEMF_ACTIVE (1 << 0)
#define LWITEMF_UNAFFECT_BY_IK (1 << 1)
#define LWITEMF_FULLTIME_IK (1 << 2)
#define LWITEMF_GOAL_ORIENT (1 << 3)
#define LWITEMF_REACH_GOAL (1 << 4)
#define LWITEMF_USE_IKCHAINVALS (1 << 5)

#define LWMOTGOAL_POSITION 0
#define LWMOTGOAL_POINT 1
#define LWMOTGOAL_ONYZPLANE 2

#define LWMOTIK_INIT_FIRSTKEY 0
#define LWMOTIK_INIT_MOSTRECENTKEY 1
#define LWMOTIK_INIT_CURRENTCHAN 2
#define LWMOTIK_INIT_CUSTOMFRAME 3

#define LWMOTIK_SOFT_OFF 0
#define LWMOTIK_SOFT_EXPONENTIAL 1
#define LWMOTIK_SOFT_LINEAR 2
#define LWMOTIK_SOFT_CLAMP 3

#define LWMOTIK_SOFT_CHAINCHORD 0
#define LWMOTIK_SOFT_CHAINLENGTH 1
#define LWMOTIK_SOFT_CUSTOMDISTANCE 2

#define LWMOTCTL_SAMEITEM_INTERPOLATE 0
#define LWMOTCTL_SAMEITEM_COMPENSATE 1
#define LWMOTCTL_SAMEITEM_WORLD (1 << 7)

/* ---- Timing of one component of a frame (camera frame timing) ---- */

typedef struct st_LWComponentTimingInfo {
  unsigned int count;
  double offset;
  double duration;
  double stride;
} LWComponentTimingInfo;

typedef struct st_LWFrameTimingInfo {
  LWComponentTimingInfo frame;
  LWComponentTimingInfo fields;
  LWComponentTimingInfo steps;
  LWComponentTimingInfo scanlines;
  LWComponentTimingInfo pixels;
} LWFrameTimingInfo;

/* ---- Object info ---- */

#define LWOBJECTINFO_GLOBAL "LW Object Info 7"

typedef struct st_LWObjectInfo {
  const char *(*filename)(LWItemID object);
  int (*numPoints)(LWItemID object);
  int (*numPolygons)(LWItemID object);
  unsigned int (*shadowOpts)(LWItemID object);
  double (*dissolve)(LWItemID object, LWTime t);
  LWMeshInfoID (*meshInfo)(LWItemID object, int frozen);
  unsigned int (*flags)(LWItemID object);
  double (*fog)(LWItemID object, LWTime t);
  LWTextureID (*dispMap)(LWItemID object);
  LWTextureID (*clipMap)(LWItemID object);
  void (*patchLevel)(LWItemID object, int *display, int *render);
  void (*metaballRes)(LWItemID object, double *display, double *render);
  LWItemID (*boneSource)(LWItemID object);
  LWItemID (*morphTarget)(LWItemID object);
  double (*morphAmount)(LWItemID object, LWTime t);
  unsigned int (*edgeOpts)(LWItemID object);
  void (*edgeColor)(LWItemID object, LWTime t, LWDVector color);
  int (*subdivOrder)(LWItemID object);
  double (*polygonSize)(LWItemID object, LWTime t);
  int (*excluded)(LWItemID object, LWItemID light);
  void (*matteColor)(LWItemID object, LWTime t, LWDVector color);
  double (*thickness)(LWItemID object, LWTime t, int type);
  double (*edgeZScale)(LWItemID object, LWTime t);
  double (*shrinkEdgesNominalDistance)(LWItemID object, LWTime t); /* version 5 */
  double (*maxDissolveDistance)(LWItemID object);                  /* version 6 */
  double (*bumpDistance)(LWItemID object);                         /* version 6 */
  unsigned int (*getGroupIndex)(LWItemID object);                  /* version 7 */
  int (*dispMapOrder)(LWItemID object);
  int (*bumpOrder)(LWItemID object);
  NodeEditorID (*getNodeEditor)(LWItemID object);
  int (*nodeOrder)(LWItemID object);
  void (*bounds)(LWItemID object, LWDVector min, LWDVector max);
  double (*shadowoffsetdistance)(LWItemID object);
} LWObjectInfo;

/* shadowOpts() */
#define LWOSHAD_SELF (1 << 0)
#define LWOSHAD_CAST (1 << 1)
#define LWOSHAD_RECEIVE (1 << 2)

/* flags() of an object */
#define LWOBJF_UNSEEN_BY_CAMERA (1 << 0)
#define LWOBJF_UNSEEN_BY_RAYS (1 << 1)
#define LWOBJF_UNAFFECT_BY_FOG (1 << 2)
#define LWOBJF_MORPH_MTSE (1 << 3)
#define LWOBJF_MORPH_SURFACES (1 << 4)
#define LWOBJF_MATTE (1 << 5)
#define LWOBJF_UNSEEN_BY_ALPHA (1 << 6)
#define LWOBJF_ALPHA_CONSTANT_BLACK (1 << 7)
#define LWOBJF_DISTANCEDISSOLVE (1 << 8)
#define LWOBJF_BUMPENABLE (1 << 9)
#define LWOBJF_FASTERBONES (1 << 10)
#define LWOBJF_USEMORPHEDPOSITIONS (1 << 11)
#define LWOBJF_CONTAINS1POINTPOLYGONS (1 << 12)
#define LWOBJF_CONTAINSPATCHES (1 << 13)
#define LWOBJF_CONTAINSMETABALLS (1 << 14)
#define LWOBJF_CONTAINSPARTIGONS (1 << 15)
#define LWOBJF_CONTAINSCUSTOMPOLYGONS (1 << 16)
#define LWOBJF_NODEDISPENABLED (1 << 17)
#define LWOBJF_NODEFORMERSAPPLIED (1 << 18)
#define LWOBJF_UNSEEN_BY_RADIOSITY (1 << 19)

/* ---- Light info ---- */

#define LWLIGHTINFO_GLOBAL "LW Light Info 5"

typedef struct st_LWLightInfo {
  void (*ambient)(LWTime t, LWDVector color);
  int (*type)(LWItemID light);
  void (*color)(LWItemID light, LWTime t, LWDVector color); /* colour times intensity */
  int (*shadowType)(LWItemID light);
  void (*coneAngles)(LWItemID light, LWTime t, double *radius, double *edge);
  unsigned int (*flags)(LWItemID light);
  double (*range)(LWItemID light, LWTime t);
  int (*falloff)(LWItemID light);
  LWImageID (*projImage)(LWItemID light);
  int (*shadMapSize)(LWItemID light);
  double (*shadMapAngle)(LWItemID light, LWTime t);
  double (*shadMapFuzz)(LWItemID light, LWTime t);
  int (*quality)(LWItemID light, LWTime t);
  void (*rawColor)(LWItemID light, LWTime t, LWDVector color);
  double (*intensity)(LWItemID light, LWTime t);
  void (*shadowColor)(LWItemID light, LWTime t, LWDVector color);
  double (*ambientIntensity)(LWTime t);
  void (*ambientRaw)(LWTime t, LWDVector color);
} LWLightInfo;

#define LWLIGHT_DISTANT 0
#define LWLIGHT_POINT 1
#define LWLIGHT_SPOT 2
#define LWLIGHT_LINEAR 3
#define LWLIGHT_AREA 4
#define LWLIGHT_CUSTOM 100

#define LWLSHAD_OFF 0
#define LWLSHAD_RAYTRACE 1
#define LWLSHAD_MAP 2

#define LWLFL_LIMITED_RANGE (1 << 0)
#define LWLFL_NO_DIFFUSE (1 << 1)
#define LWLFL_NO_SPECULAR (1 << 2)
#define LWLFL_NO_CAUSTICS (1 << 3)
#define LWLFL_LENS_FLARE (1 << 4)
#define LWLFL_VOLUMETRIC (1 << 5)
#define LWLFL_NO_OPENGL (1 << 6)
#define LWLFL_FIT_CONE (1 << 7)
#define LWLFL_CACHE_SHAD_MAP (1 << 8)

#define LWLFALL_OFF 0
#define LWLFALL_LINEAR 1
#define LWLFALL_INV_DIST 2
#define LWLFALL_INV_DIST_2 3

/* ---- Camera info ---- */

#define LWCAMERAINFO_GLOBAL "LW Camera Info 5"

typedef struct st_LWCameraInfo {
  double (*zoomFactor)(LWItemID camera, LWTime t);
  double (*focalLength)(LWItemID camera, LWTime t);
  double (*focalDistance)(LWItemID camera, LWTime t);
  double (*fStop)(LWItemID camera, LWTime t);
  double (*blurLength)(LWItemID camera, LWTime t);
  void (*fovAngles)(LWItemID camera, LWTime t, double *horizontal, double *vertical);
  unsigned int (*flags)(LWItemID camera);
  void (*resolution)(LWItemID camera, int *width, int *height);
  double (*pixelAspect)(LWItemID camera, LWTime t);
  double (*separation)(LWItemID camera, LWTime t);
  void (*regionLimits)(LWItemID camera, int *x0, int *y0, int *x1, int *y1);
  void (*maskLimits)(LWItemID camera, int *x0, int *y0, int *x1, int *y1);
  void (*maskColor)(LWItemID camera, LWDVector color);
  unsigned int (*motionBlur)(LWItemID camera);     /* version 3 */
  unsigned int (*fieldRendering)(LWItemID camera); /* version 3 */
  int (*irisPos)(LWItemID camera, LWTime t, int pass, float *ix, float *iy);
  int (*usingGlobalResolution)(LWItemID camera);
  int (*usingGlobalBlur)(LWItemID camera);
  int (*usingGlobalMask)(LWItemID camera);
  unsigned int (*motionBlurPasses)(LWItemID camera, LWTime t);
  double (*shutterEfficiency)(LWItemID camera, LWTime t);
  unsigned int (*noiseSampler)(LWItemID camera);
  void (*filmSize)(LWItemID camera, double *width, double *height);
  unsigned int (*frameTiming)(LWItemID camera, LWFrame frame, LWFrameTimingInfo *timing);
  unsigned int (*antiAliasing)(LWItemID camera, LWTime t);
  double (*overSampling)(LWItemID camera, LWTime t);
  void (*diaphragm)(LWItemID camera, LWTime t, int *sides, double *rotation);
} LWCameraInfo;

#define LWCAMF_STEREO (1 << 0)
#define LWCAMF_LIMITED_REGION (1 << 1)
#define LWCAMF_MASK (1 << 2)
#define LWCAMF_DOF (1 << 3)
#define LWCAMF_PARTICLE_BLUR (1 << 4)
#define LWCAMF_LR_NOBORDERS (1 << 5)
#define LWCAMF_FIELD (1 << 6)
#define LWCAMF_USECAMTYPE (1 << 7)
#define LWCAMF_SUPPORTS_DOF (1 << 8)
#define LWCAMF_EYE (1 << 9)

/* ---- Scene info ---- */

/* Values of LWSceneInfo.loadInProgress. */
enum {
  SI_NoLoad = 0,
  SI_LoadScene,
  SI_LoadFromScene
};

/* Values of LWSceneInfo.radiosityType. */
enum {
  LWRT_BackDrop = 0,
  LWRT_MonteCarlo,
  LWRT_FinalGather,
  LWRT_Sizeof
};

/* Values of LWSceneInfo.rendermode. */
typedef enum en_lwrenderingmode {
  lwrm_None = 0,
  lwrm_SceneBake,
  lwrm_Scene,
  lwrm_FrameBake,
  lwrm_Frame,
  lwrm_Inspire,
  lwrm_SelectedObject,
  lwrm_sizeof
} LWRENDERINGMODE;

#define LWSCENEINFO_GLOBAL "LW Scene Info 6"

/* A record the host keeps current, not a function table. */
typedef struct st_LWSceneInfo {
  const char *name;
  const char *filename;
  int numPoints;
  int numPolygons;
  int renderType;
  int renderOpts;
  LWFrame frameStart;
  LWFrame frameEnd;
  LWFrame frameStep;
  double framesPerSecond;
  int frameWidth;
  int frameHeight;
  double pixelAspect;
  int minSamplesPerPixel;
  int maxSamplesPerPixel;
  int limitedRegion[4]; /* x0, y0, x1, y1 */
  int recursionDepth;
  LWItemID (*renderCamera)(LWTime t);
  int numThreads;
  const char *animFilename;
  const char *RGBPrefix;
  const char *alphaPrefix;
  /* version 4 */
  int antialiasing;
  int enhancedAA;
  int adaptiveSampling;
  float adaptiveThreshold;
  int filter;
  int dblSidedAreaLights;
  /* version 5 */
  int loadInProgress;
  int radiosityType;
  int radiosityIndirectBounceCount;
  int radiosityRaysPerEvaluation1;
  int radiosityRaysPerEvaluation2;
  double radiosityIntensity;
  double radiosityAngularTolerance;
  double radiosityMinimumPixelSpacing;
  double radiosityMaximumPixelSpacing;
  double radiosityMultiplier;
  const char *radiosityFileName;
  /* version 6 */
  double causticsIntensity;
  int causticsAccuracy;
  int causticsSoftness;
  int radiosityFlags;
  double dynamicsRangeMin;
  double dynamicsRangeMax;
  double saturation;
  int pixelFilterForceMT;
  int has_multithreaded_filters;
  int useZminmax;
  double zmin;
  double zmax;
  int rendermode;
  int calculateallnormals;
} LWSceneInfo;

#define LWRTYPE_WIRE 0
#define LWRTYPE_QUICK 1
#define LWRTYPE_REALISTIC 2

#define LWROPT_SHADOWTRACE (1 << 0)
#define LWROPT_REFLECTTRACE (1 << 1)
#define LWROPT_REFRACTTRACE (1 << 2)
#define LWROPT_FIELDS (1 << 3)
#define LWROPT_EVENFIELDS (1 << 4)
#define LWROPT_MOTIONBLUR (1 << 5)
#define LWROPT_DEPTHOFFIELD (1 << 6)
#define LWROPT_LIMITEDREGION (1 << 7)
#define LWROPT_PARTICLEBLUR (1 << 8)
#define LWROPT_ENHANCEDAA (1 << 9)
#define LWROPT_SAVEANIM (1 << 10)
#define LWROPT_SAVERGB (1 << 11)
#define LWROPT_SAVEALPHA (1 << 12)
#define LWROPT_ZBUFFERAA (1 << 13)
#define LWROPT_RTTRANSPARENCIES (1 << 14)
#define LWROPT_RADIOSITY (1 << 15)
#define LWROPT_CAUSTICS (1 << 16)
#define LWROPT_OCCLUSION (1 << 17)
#define LWROPT_RENDERLINES (1 << 18)
#define LWROPT_INTERPOLATED (1 << 19)
#define LWROPT_BLURBACKGROUND (1 << 20)
#define LWROPT_USETRANSPARENCY (1 << 21)
#define LWROPT_VOLUMETRICRADIOSITY (1 << 22)
#define LWROPT_USEAMBIENT (1 << 23)
#define LWROPT_DIRECTIONALRAYS (1 << 24)
#define LWROPT_LIMITDYNAMICRANGE (1 << 25)
#define LWROPT_CACHERADIOSITY (1 << 26)
#define LWROPT_USEGRADIENTS (1 << 27)
#define LWROPT_USEBEHINDTEST (1 << 28)
#define LWROPT_CAUSTICSCACHE (1 << 29)
#define LWROPT_EYECAMERA (1 << 30)
#define LWROPT_UNPREMULTIPLIEDALPHA ((int)(1u << 31))

#define LWRDFLG_SHOW_NODES (1 << 0)
#define LWRDFLG_SHOW_CELLS (1 << 1)
#define LWRDFLG_SHOW_COLOR_CELLS (1 << 2)
#define LWRDFLG_SHOW_SAMPLES (1 << 3)
#define LWRDFLG_SHOW_MISSING_PREPROCESS_SAMPLES (1 << 4)
#define LWRDFLG_SHOW_MISSING_RENDER_SAMPLES (1 << 5)
#define LWRDFLG_SHOW_SECOND_BOUNCE (1 << 6)
#define LWRDFLG_SHOW_BEHIND (1 << 7)
#define LWRDFLG_USE_BUMPS ((int)(1u << 31))

/* ---- Time info: the time and frame being rendered or shown ---- */

#define LWTIMEINFO_GLOBAL "LW Time Info"

typedef struct st_LWTimeInfo {
  LWTime time;
  LWFrame frame;
} LWTimeInfo;

/* ---- Interface info: Layout's user-interface state ---- */

#define LWINTERFACEINFO_GLOBAL "LW Interface Info 7"

typedef struct st_LWInterfaceInfo {
  LWTime curTime;
  const LWItemID *selItems; /* NULL-terminated */
  unsigned int (*itemFlags)(LWItemID item);
  LWFrame previewStart;
  LWFrame previewEnd;
  LWFrame previewStep;
  int dynaUpdate;
  void (*schemaPos)(LWItemID item, double *x, double *y);
  int (*itemVis)(LWItemID item);
  unsigned int displayFlags;
  unsigned int generalFlags;
  int boxThreshold;
  int (*itemColor)(LWItemID item);
  void (*setItemColorIndex)(LWItemID item, int color);
  void (*setItemColorCustom)(LWItemID item, double *color);
  int alertLevel;
  int autoKeyCreate;
  void (*defaultItemTypeColor)(LWItemType type, float *color, int set);
  void (*itemColorRgba)(LWItemID item, unsigned int state, float rgba[4]);
  float (*itemIconScale)(LWItemID item);
} LWInterfaceInfo;

/* itemFlags() */
#define LWITEMF_SELECTED (1 << 0)
#define LWITEMF_SHOWCHILDREN (1 << 1)
#define LWITEMF_SHOWCHANNELS (1 << 2)
#define LWITEMF_LOCKED (1 << 3)

/* dynaUpdate */
#define LWDYNUP_OFF 0
#define LWDYNUP_DELAYED 1
#define LWDYNUP_INTERACTIVE 2

/* itemVis() for lights, cameras and bones, then for objects */
#define LWIVIS_HIDDEN 0
#define LWIVIS_VISIBLE 1

#define LWOVIS_HIDDEN 0
#define LWOVIS_BOUNDINGBOX 1
#define LWOVIS_VERTICES 2
#define LWOVIS_WIREFRAME 3
#define LWOVIS_FFWIREFRAME 4
#define LWOVIS_SHADED 5
#define LWOVIS_TEXTURED 6
#define LWOVIS_TEXTURED_WIRE 7

/* autoKeyCreate */
#define LWAKC_OFF 0
#define LWAKC_MODIFIED 1
#define LWAKC_ALL 2

/* displayFlags */
#define LWDISPF_MOTIONPATHS (1 << 0)
#define LWDISPF_HANDLES (1 << 1)
#define LWDISPF_IKCHAINS (1 << 2)
#define LWDISPF_CAGES (1 << 3)
#define LWDISPF_SAFEAREAS (1 << 4)
#define LWDISPF_FIELDCHART (1 << 5)

/* generalFlags */
#define LWGENF_HIDETOOLBAR (1 << 0)
#define LWGENF_RIGHTTOOLBAR (1 << 1)
#define LWGENF_PARENTINPLACE (1 << 2)
#define LWGENF_FRACTIONALFRAME (1 << 3)
#define LWGENF_KEYSINSLIDER (1 << 4)
#define LWGENF_PLAYEXACTRATE (1 << 5)
#define LWGENF_AUTOKEY (1 << 6)
#define LWGENF_IKENABLE (1 << 7)
#define LWGENF_LMBITEMSELECT (1 << 8)
#define LWGENF_AUTOCONF (1 << 9)
#define LWGENF_DOUBLECLICKBONEMODE (1 << 10)
#define LWGENF_MCENABLE (1 << 11)

/* alertLevel */
#define LWALERT_BEGINNER 0
#define LWALERT_INTERMEDIATE 1
#define LWALERT_EXPERT 2

/* state argument of itemColorRgba() */
#define LWITEMCOL_CURRENT 0
#define LWITEMCOL_NORMAL 1
#define LWITEMCOL_SELECTED 2

#endif
