/* The Channel Blender written directly against the SDK in plain C: the vector rebuilt from its
 * input and the scalars that replace its components, and each component as an output. */
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwserver.h>
#include <stdlib.h>

#include "PlainNode.h"

static LWNodeInputFuncs *inputs;
static LWNodeOutputFuncs *outputs;

typedef struct {
  NodeID node;
  NodeInputID vectorIn, componentIn[3];
  NodeOutputID vectorOut, componentOut[3];
} PlainChannelBlender;

static LWInstance Create(void *priv, void *context, LWError *err) {
  static const char *const names[3] = {"X", "Y", "Z"};
  PlainChannelBlender *self = calloc(1, sizeof *self);
  int k;
  (void)priv;
  if (!self) {
    *err = "out of memory";
    return NULL;
  }
  self->node = context;
  self->vectorOut = outputs->create(context, NOT_VECTOR, "Vector");
  for (k = 0; k < 3; ++k) self->componentOut[k] = outputs->create(context, NOT_SCALAR, names[k]);
  self->vectorIn = inputs->create(context, NOT_VECTOR, "Vector", NULL);
  for (k = 0; k < 3; ++k) self->componentIn[k] = inputs->create(context, NOT_SCALAR, names[k], NULL);
  return self;
}

static void Destroy(LWInstance inst) {
  PlainChannelBlender *self = inst;
  int k;
  inputs->destroy(self->node, self->vectorIn);
  outputs->destroy(self->node, self->vectorOut);
  for (k = 0; k < 3; ++k) {
    inputs->destroy(self->node, self->componentIn[k]);
    outputs->destroy(self->node, self->componentOut[k]);
  }
  free(self);
}

static void PlainChannelBlender_Evaluate(LWInstance inst, LWNodalAccess *na, NodeOutputID output, NodeValue value) {
  PlainChannelBlender *self = inst;
  double v[3] = {0.0, 0.0, 0.0};
  int k;
  inputs->evaluate(self->vectorIn, na, v);
  for (k = 0; k < 3; ++k) inputs->evaluate(self->componentIn[k], na, &v[k]);
  if (output == self->vectorOut) {
    outputs->setValue(value, v);
    return;
  }
  for (k = 0; k < 3; ++k)
    if (output == self->componentOut[k]) outputs->setValue(value, &v[k]);
}

static const LWInstanceFuncs instanceFuncs = {NULL, Create, Destroy, PlainCopyNothing, PlainLoadNothing,
                                              PlainSaveNothing, PlainNoDescription};

static int Activate(int version, GlobalFunc *g, void *local, void *serverData) {
  PlainServices services;
  const int result = PlainActivate(version, g, local, &instanceFuncs, PlainChannelBlender_Evaluate, &services);
  (void)serverData;
  if (result == AFUNC_OK) inputs = services.inputs, outputs = services.outputs;
  return result;
}

static ServerTagInfo tags[] = {{"Plain Channel Blender", SRVTAG_USERNAME}, {NULL, 0}};
const ServerRecord plainChannelBlenderRecord = {LWNODE_HCLASS, "plainChannelBlender", Activate, tags};
