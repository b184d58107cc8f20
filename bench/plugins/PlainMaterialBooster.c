/* The Material Booster's "Material" written directly against the SDK in plain C, with the
 * settings the instruction count uses (every boost at 100 %; maxima 300, 200, 150, 50 and
 * 400 %; camera rays only off) held in the instance as the sampled envelopes would leave them. */
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwrender.h>
#include <lwserver.h>
#include <stdlib.h>
#include <string.h>

#include "PlainNode.h"

static LWNodeInputFuncs *inputs;
static LWNodeOutputFuncs *outputs;

enum { CHANNELS = 5 };

typedef struct {
  NodeID node;
  NodeInputID material, boostIn[CHANNELS], curveIn[CHANNELS], maxIn[CHANNELS];
  NodeOutputID materialOut;
  double boost[CHANNELS], maximum[CHANNELS];
  int cameraOnly;
  LWItemID renderCamera;
} PlainBooster;

static LWInstance Create(void *priv, void *context, LWError *err) {
  static const char *const boostNames[CHANNELS] = {"Diffuse Boost", "Specular Boost", "Reflection Boost",
                                                   "Refraction Boost", "Transparency Boost"};
  static const char *const curveNames[CHANNELS] = {"Diffuse Curve", "Specular Curve", "Reflection Curve",
                                                   "Refraction Curve", "Transparency Curve"};
  static const char *const maxNames[CHANNELS] = {"Diffuse Maximum", "Specular Maximum", "Reflection Maximum",
                                                 "Refraction Maximum", "Transparency Maximum"};
  static const double maxima[CHANNELS] = {3.0, 2.0, 1.5, 0.5, 4.0};
  PlainBooster *self = calloc(1, sizeof *self);
  int k;
  (void)priv;
  if (!self) {
    *err = "out of memory";
    return NULL;
  }
  self->node = context;
  self->material = inputs->create(context, NOT_MATERIAL, "Material", NULL);
  for (k = 0; k < CHANNELS; ++k) {
    self->boostIn[k] = inputs->create(context, NOT_SCALAR, boostNames[k], NULL);
    self->curveIn[k] = inputs->create(context, NOT_SCALAR, curveNames[k], NULL);
    self->maxIn[k] = inputs->create(context, NOT_SCALAR, maxNames[k], NULL);
    self->boost[k] = 1.0;
    self->maximum[k] = maxima[k];
  }
  self->materialOut = outputs->create(context, NOT_MATERIAL, "Material");
  self->renderCamera = LWITEM_NULL;
  return self;
}

static void Destroy(LWInstance inst) {
  PlainBooster *self = inst;
  int k;
  inputs->destroy(self->node, self->material);
  for (k = 0; k < CHANNELS; ++k) {
    inputs->destroy(self->node, self->boostIn[k]);
    inputs->destroy(self->node, self->curveIn[k]);
    inputs->destroy(self->node, self->maxIn[k]);
  }
  outputs->destroy(self->node, self->materialOut);
  free(self);
}

/* Without a curve the maximum plays no part, so its input is not asked. */
static double Factor(const PlainBooster *self, int k, LWNodalAccess *na) {
  double boost = self->boost[k], maximum, curve = 0.0;
  inputs->evaluate(self->boostIn[k], na, &boost);
  if (!inputs->check(self->curveIn[k])) return boost;
  maximum = self->maximum[k];
  inputs->evaluate(self->maxIn[k], na, &maximum);
  inputs->evaluate(self->curveIn[k], na, &curve);
  return (maximum - boost) * curve + boost;
}

static void Scale(double *colour, double f) { colour[0] *= f, colour[1] *= f, colour[2] *= f; }

static void PlainBooster_Evaluate(LWInstance inst, LWNodalAccess *na, NodeOutputID output, NodeValue value) {
  PlainBooster *self = inst;
  LWNodalMaterial m;
  (void)output;
  memset(&m, 0, sizeof m);
  inputs->evaluate(self->material, na, &m);
  if (!self->cameraOnly || na->sourceID == LWITEM_NULL || na->sourceID == self->renderCamera) {
    Scale(m.diffuse, Factor(self, 0, na));
    Scale(m.specular, Factor(self, 1, na));
    Scale(m.reflection, Factor(self, 2, na));
    Scale(m.refraction, Factor(self, 3, na));
    m.transparency *= Factor(self, 4, na);
  }
  outputs->setValue(value, &m);
}

static const LWInstanceFuncs instanceFuncs = {NULL, Create, Destroy, PlainCopyNothing, PlainLoadNothing,
                                              PlainSaveNothing, PlainNoDescription};

static int Activate(int version, GlobalFunc *g, void *local, void *serverData) {
  PlainServices services;
  const int result = PlainActivate(version, g, local, &instanceFuncs, PlainBooster_Evaluate, &services);
  (void)serverData;
  if (result == AFUNC_OK) inputs = services.inputs, outputs = services.outputs;
  return result;
}

static ServerTagInfo tags[] = {{"Plain Material Booster", SRVTAG_USERNAME}, {NULL, 0}};
const ServerRecord plainBoosterRecord = {LWNODE_HCLASS, "plainMaterialBooster", Activate, tags};
