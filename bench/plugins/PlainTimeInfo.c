/* Time Info written directly against the SDK in plain C: the reference the instruction counts
 * compare vorn's Time Info with. Same outputs, same answers, nothing else. */
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwrender.h>
#include <lwserver.h>
#include <stdlib.h>

#include "PlainNode.h"

typedef struct {
  NodeID node;
  NodeOutputID time, frame, fps;
  double now, rate;
  int frameNo;
} PlainTimeInfo;

static GlobalFunc *global;
static LWNodeOutputFuncs *outputs;

static LWInstance Create(void *priv, void *context, LWError *err) {
  PlainTimeInfo *self = calloc(1, sizeof *self);
  (void)priv;
  if (!self) {
    *err = "out of memory";
    return NULL;
  }
  self->node = context;
  self->rate = 24.0;
  self->time = outputs->create(context, NOT_SCALAR, "Time");
  self->frame = outputs->create(context, NOT_INTEGER, "Frame");
  self->fps = outputs->create(context, NOT_SCALAR, "Frames per Second");
  return self;
}

static void Destroy(LWInstance inst) {
  PlainTimeInfo *self = inst;
  outputs->destroy(self->node, self->time);
  outputs->destroy(self->node, self->frame);
  outputs->destroy(self->node, self->fps);
  free(self);
}

static LWError Copy(LWInstance to, LWInstance from) {
  PlainTimeInfo *a = to, *b = from;
  a->now = b->now, a->rate = b->rate, a->frameNo = b->frameNo;
  return NULL;
}

static LWError Init(LWInstance inst, int mode) { (void)inst, (void)mode; return NULL; }
static void Cleanup(LWInstance inst) { (void)inst; }
static LWError NewTime(LWInstance inst, LWFrame frame, LWTime t) {
  PlainTimeInfo *self = inst;
  LWSceneInfo *scene = global(LWSCENEINFO_GLOBAL, GFUSE_TRANSIENT);
  self->now = t;
  self->frameNo = frame;
  if (scene) self->rate = scene->framesPerSecond;
  return NULL;
}

static void PlainTimeInfo_Evaluate(LWInstance inst, LWNodalAccess *na, NodeOutputID output, NodeValue value) {
  PlainTimeInfo *self = inst;
  (void)na;
  if (output == self->time)
    outputs->setValue(value, &self->now);
  else if (output == self->frame)
    outputs->setValue(value, &self->frameNo);
  else if (output == self->fps)
    outputs->setValue(value, &self->rate);
}

static LWInstanceFuncs instanceFuncs = {NULL, Create, Destroy, Copy, PlainLoadNothing, PlainSaveNothing,
                                        PlainNoDescription};
static LWRenderFuncs renderFuncs = {Init, Cleanup, NewTime};

static int Activate(int version, GlobalFunc *g, void *local, void *serverData) {
  LWNodeHandler *handler = local;
  (void)serverData;
  if (version < 1) return AFUNC_BADVERSION;
  global = g;
  outputs = g(LWNODEOUTPUTFUNCS_GLOBAL, GFUSE_TRANSIENT);
  if (!outputs) return AFUNC_BADGLOBAL;
  *handler->inst = instanceFuncs;
  *handler->rend = renderFuncs;
  handler->evaluate = PlainTimeInfo_Evaluate;
  return AFUNC_OK;
}

static ServerTagInfo tags[] = {{"Plain Time Info", SRVTAG_USERNAME}, {NULL, 0}};
const ServerRecord plainTimeInfoRecord = {LWNODE_HCLASS, "plainTimeInfo", Activate, tags};
