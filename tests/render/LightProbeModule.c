/* A node written the plain SDK way, as a third party would: it walks the scene's lights with
 * item info and light info and asks the host to illuminate the spot from each. Outputs:
 *   Lambert  the sum over lights of the arriving colour times max(0, N . L)
 *   Ray      red bounces / 4, green 1 when the ray source is an object, blue 1 when it is the
 *            object named "floor"
 *   Trace    what rayTrace sees along the mirror direction of the camera ray
 *   Thread   (thread index + 1) / (threads reported at init + 1); 1 when the index is out of range
 * Frame 13 fails.
 */
#include <lwhost.h>
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwrender.h>
#include <lwserver.h>
#include <string.h>

static LWNodeOutputFuncs *outputs;
static LWItemInfo *items;
static LWLightInfo *lights;
static LWSceneInfo *scene;

typedef struct {
  NodeOutputID lambert, ray, trace, thread;
  int threads;
} Probe;

static Probe probes[8];
static int used[8];

static LWInstance Create(void *priv, void *node, LWError *err) {
  int i;
  (void)priv;
  for (i = 0; i < 8 && used[i]; ++i) {
  }
  if (i == 8) {
    *err = "too many probes";
    return NULL;
  }
  used[i] = 1;
  probes[i].lambert = outputs->create(node, NOT_COLOR, "Lambert");
  probes[i].ray = outputs->create(node, NOT_COLOR, "Ray");
  probes[i].trace = outputs->create(node, NOT_COLOR, "Trace");
  probes[i].thread = outputs->create(node, NOT_SCALAR, "Thread");
  return &probes[i];
}

static void Destroy(LWInstance inst) { used[(Probe *)inst - probes] = 0; }
static LWError Copy(LWInstance to, LWInstance from) {
  (void)to, (void)from;
  return NULL;
}
static LWError Load(LWInstance inst, const LWLoadState *ls) {
  (void)inst, (void)ls;
  return NULL;
}
static LWError Save(LWInstance inst, const LWSaveState *ss) {
  (void)inst, (void)ss;
  return NULL;
}
static const char *Describe(LWInstance inst) {
  (void)inst;
  return "Light Probe";
}
static LWError Init(LWInstance inst, int mode) {
  (void)mode;
  ((Probe *)inst)->threads = scene->numThreads;
  return NULL;
}
static void Cleanup(LWInstance inst) { (void)inst; }
/* Frame 13 fails, so that a render can be seen to stop on a failing frame. */
static LWError NewTime(LWInstance inst, LWFrame frame, LWTime time) {
  (void)inst, (void)time;
  return frame == 13 ? "unlucky frame" : NULL;
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
    double dir[3], k = 2 * (na->rayDir[0] * na->wNorm[0] + na->rayDir[1] * na->wNorm[1] + na->rayDir[2] * na->wNorm[2]);
    int i;
    for (i = 0; i < 3; ++i) dir[i] = na->rayDir[i] - k * na->wNorm[i];
    if (!na->rayTrace || na->rayTrace(na->wPos, dir, rgb) < 0) rgb[0] = rgb[1] = rgb[2] = 0;
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

static unsigned int Flags(LWInstance inst) {
  (void)inst;
  return 0;
}

static int Activate(int version, GlobalFunc *global, void *local, void *serverData) {
  static LWInstanceFuncs instance = {NULL, Create, Destroy, Copy, Load, Save, Describe};
  static LWRenderFuncs render = {Init, Cleanup, NewTime};
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
  if (version >= 2) handler->flags = Flags;
  return AFUNC_OK;
}

static ServerRecord records[] = {{LWNODE_HCLASS, "LightProbe", Activate, NULL}, {NULL, NULL, NULL, NULL}};

static void *Startup(void) { return (void *)4; }
static void Shutdown(void *serverData) { (void)serverData; }

__attribute__((visibility("default"))) ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE,
                                                                        Startup, Shutdown, records};
