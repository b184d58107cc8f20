/* A plain-SDK node that walks the scene's lights, as a third party would write it. Outputs:
 * Lambert, the light from each light times max(0, N . L), summed; Ray, (bounces / 4, source is
 * an object, source is "floor") as RGB; Trace, what rayTrace sees along the mirror direction;
 * Shade, what rayShade finds there: (red, bounces / 4, source is this object); Poly0 to Poly2,
 * polNum's bits 0-2, 3-5 and 6-8 as R, G and B (0 or 1); Thread, (index + 1) / (threads at init + 1), or 1 out of range. Frame 13 fails. */
#include <lwhost.h>
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwrender.h>
#include <lwserver.h>
#include <lwshader.h>
#include <stdlib.h>
#include <string.h>

static LWNodeOutputFuncs *outputs;
static LWItemInfo *items;
static LWLightInfo *lights;
static LWSceneInfo *scene;

typedef struct {
  NodeOutputID lambert, ray, trace, shade, poly[3], thread;
  int threads;
} Probe;

static LWInstance Create(void *priv, void *node, LWError *err) {
  Probe *p = (Probe *)calloc(1, sizeof *p);
  (void)priv, (void)err;
  p->lambert = outputs->create(node, NOT_COLOR, "Lambert");
  p->ray = outputs->create(node, NOT_COLOR, "Ray");
  p->trace = outputs->create(node, NOT_COLOR, "Trace");
  p->shade = outputs->create(node, NOT_COLOR, "Shade");
  p->poly[0] = outputs->create(node, NOT_COLOR, "Poly0");
  p->poly[1] = outputs->create(node, NOT_COLOR, "Poly1");
  p->poly[2] = outputs->create(node, NOT_COLOR, "Poly2");
  p->thread = outputs->create(node, NOT_SCALAR, "Thread");
  return p;
}

static LWError Init(LWInstance inst, int mode) {
  (void)mode;
  ((Probe *)inst)->threads = scene->numThreads;
  return NULL;
}
static LWError NewTime(LWInstance inst, LWFrame frame, LWTime time) {
  (void)inst, (void)time;
  return frame == 13 ? "unlucky frame" : NULL;
}

static void Mirror(const LWNodalAccess *na, double dir[3]) {
  double k = 2 * (na->rayDir[0] * na->wNorm[0] + na->rayDir[1] * na->wNorm[1] + na->rayDir[2] * na->wNorm[2]);
  int i;
  for (i = 0; i < 3; ++i) dir[i] = na->rayDir[i] - k * na->wNorm[i];
}

static void Evaluate(LWInstance inst, LWNodalAccess *na, NodeOutputID out, NodeValue value) {
  Probe *p = (Probe *)inst;
  double rgb[3] = {0, 0, 0};
  if (out == p->lambert) {
    LWItemID light;
    if (!na->illuminate) return;
    for (light = items->first(LWI_LIGHT, LWITEM_NULL); light; light = items->next(light)) {
      double dir[3], colour[3], cosine;
      int i;
      if (lights->type(light) > LWLIGHT_SPOT) continue;
      if (!na->illuminate(light, na->wPos, dir, colour)) continue;
      cosine = -(dir[0] * na->wNorm[0] + dir[1] * na->wNorm[1] + dir[2] * na->wNorm[2]);
      if (cosine > 0)
        for (i = 0; i < 3; ++i) rgb[i] += colour[i] * cosine;
    }
  } else if (out == p->trace) {
    double dir[3];
    Mirror(na, dir);
    if (!na->rayTrace || na->rayTrace(na->wPos, dir, rgb) < 0) rgb[0] = rgb[1] = rgb[2] = 0;
  } else if (out == p->shade) {
    double dir[3];
    LWShaderAccess sa;
    Mirror(na, dir);
    if (na->rayShade && na->rayShade(na->wPos, dir, &sa) >= 0) {
      rgb[0] = sa.color[0];
      rgb[1] = sa.bounces * 0.25;
      rgb[2] = sa.sourceID == na->objID ? 1.0 : 0.0;
    }
  } else if (out == p->poly[0] || out == p->poly[1] || out == p->poly[2]) {
    int shift = out == p->poly[0] ? 0 : out == p->poly[1] ? 3 : 6, i;
    for (i = 0; i < 3; ++i) rgb[i] = (na->polNum >> (shift + i)) & 1;
  } else if (out == p->ray) {
    const char *name = items->name(na->sourceID);
    rgb[0] = na->bounces * 0.25;
    rgb[1] = items->type(na->sourceID) == LWI_OBJECT ? 1.0 : 0.0;
    rgb[2] = name && strcmp(name, "floor") == 0 ? 1.0 : 0.0;
  } else {
    double share = (na->ResourceContextIndex + 1.0) / (p->threads + 1.0);
    if (na->ResourceContextIndex < 0 || na->ResourceContextIndex >= p->threads) share = 1.0;
    outputs->setValue(value, &share);
    return;
  }
  outputs->setValue(value, rgb);
}

static int Activate(int version, GlobalFunc *global, void *local, void *serverData) {
  static LWInstanceFuncs instance = {NULL, Create, free, NULL, NULL, NULL, NULL};
  static LWRenderFuncs render = {Init, NULL, NewTime};
  LWNodeHandler *handler = (LWNodeHandler *)local;
  (void)serverData;
  if (version < 1) return AFUNC_BADVERSION;
  outputs = (LWNodeOutputFuncs *)global(LWNODEOUTPUTFUNCS_GLOBAL, GFUSE_TRANSIENT);
  items = (LWItemInfo *)global(LWITEMINFO_GLOBAL, GFUSE_TRANSIENT);
  lights = (LWLightInfo *)global(LWLIGHTINFO_GLOBAL, GFUSE_TRANSIENT);
  scene = (LWSceneInfo *)global(LWSCENEINFO_GLOBAL, GFUSE_TRANSIENT);
  if (!outputs || !items || !lights || !scene) return AFUNC_BADGLOBAL;
  handler->inst = &instance;
  handler->item = NULL;
  handler->rend = &render;
  handler->evaluate = Evaluate;
  handler->customPreview = NULL;
  return AFUNC_OK;
}

static ServerRecord records[] = {{LWNODE_HCLASS, "LightProbe", Activate, NULL}, {NULL, NULL, NULL, NULL}};

static void *Startup(void) { return (void *)4; }
static void Shutdown(void *serverData) { (void)serverData; }

__attribute__((visibility("default"))) ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE,
                                                                        Startup, Shutdown, records};
