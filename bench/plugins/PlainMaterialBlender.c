/* The Material Blender's "Material" written directly against the SDK in plain C, with the
 * settings the instruction count uses (every channel at half opacity; modes Multiply, Screen,
 * Additive, Normal, Difference) held in the instance as a panel would leave them. */
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwserver.h>
#include <stdlib.h>
#include <string.h>

#include "PlainNode.h"

static LWNodeInputFuncs *inputs;
static LWNodeOutputFuncs *outputs;

enum { CHANNELS = 5, TRANSPARENCY = 4 };

typedef struct {
  NodeID node;
  NodeInputID bgMaterial, fgMaterial, bg[CHANNELS], fg[CHANNELS], opacityIn[CHANNELS], modeIn[CHANNELS];
  NodeOutputID material;
  double opacity[CHANNELS];
  int mode[CHANNELS];
} PlainBlender;

static LWNodeUtilityFuncs *utility;

static LWInstance Create(void *priv, void *context, LWError *err) {
  static const char *const bgNames[CHANNELS] = {"Bg Diffuse", "Bg Specular", "Bg Reflection", "Bg Refraction",
                                                "Bg Transparency"};
  static const char *const fgNames[CHANNELS] = {"Fg Diffuse", "Fg Specular", "Fg Reflection", "Fg Refraction",
                                                "Fg Transparency"};
  static const char *const opacityNames[CHANNELS] = {"Diffuse Opacity", "Specular Opacity", "Reflection Opacity",
                                                     "Refraction Opacity", "Transparency Opacity"};
  static const char *const modeNames[CHANNELS] = {"Diffuse Mode", "Specular Mode", "Reflection Mode",
                                                  "Refraction Mode", "Transparency Mode"};
  static const int modes[CHANNELS] = {Blend_Multiply, Blend_Screen, Blend_Additive, Blend_Normal, Blend_Difference};
  PlainBlender *self = calloc(1, sizeof *self);
  int k;
  (void)priv;
  if (!self) {
    *err = "out of memory";
    return NULL;
  }
  self->node = context;
  self->bgMaterial = inputs->create(context, NOT_MATERIAL, "Bg Material", NULL);
  for (k = 0; k < CHANNELS; ++k)
    self->bg[k] = inputs->create(context, k == TRANSPARENCY ? NOT_SCALAR : NOT_COLOR, bgNames[k], NULL);
  self->fgMaterial = inputs->create(context, NOT_MATERIAL, "Fg Material", NULL);
  for (k = 0; k < CHANNELS; ++k)
    self->fg[k] = inputs->create(context, k == TRANSPARENCY ? NOT_SCALAR : NOT_COLOR, fgNames[k], NULL);
  for (k = 0; k < CHANNELS; ++k) {
    self->opacityIn[k] = inputs->create(context, NOT_SCALAR, opacityNames[k], NULL);
    self->modeIn[k] = inputs->create(context, NOT_INTEGER, modeNames[k], NULL);
    self->opacity[k] = 0.5;
    self->mode[k] = modes[k];
  }
  self->material = outputs->create(context, NOT_MATERIAL, "Material");
  return self;
}

static void Destroy(LWInstance inst) {
  PlainBlender *self = inst;
  int k;
  inputs->destroy(self->node, self->bgMaterial);
  inputs->destroy(self->node, self->fgMaterial);
  for (k = 0; k < CHANNELS; ++k) {
    inputs->destroy(self->node, self->bg[k]);
    inputs->destroy(self->node, self->fg[k]);
    inputs->destroy(self->node, self->opacityIn[k]);
    inputs->destroy(self->node, self->modeIn[k]);
  }
  outputs->destroy(self->node, self->material);
  free(self);
}

static unsigned int Flags(LWInstance inst) { (void)inst; return NF_TRANSP; }

static int Mode(PlainBlender *self, int k, LWNodalAccess *na) {
  int m = self->mode[k];
  inputs->evaluate(self->modeIn[k], na, &m);
  return m;
}

static int AnyUnconnected(const NodeInputID *in) {
  int k;
  for (k = 0; k < CHANNELS; ++k)
    if (!inputs->check(in[k])) return 1;
  return 0;
}

static void PlainBlender_Evaluate(LWInstance inst, LWNodalAccess *na, NodeOutputID output, NodeValue value) {
  PlainBlender *self = inst;
  LWNodalMaterial bg, fg, result;
  double opacity[CHANNELS];
  int k, needed = 0, shows = 0;
  if (output != self->material) return;
  memset(&bg, 0, sizeof bg);
  memset(&fg, 0, sizeof fg);
  memset(&result, 0, sizeof result);
  for (k = 0; k < CHANNELS; ++k) {
    opacity[k] = self->opacity[k];
    inputs->evaluate(self->opacityIn[k], na, &opacity[k]);
  }
  if (AnyUnconnected(self->bg)) {
    for (k = 0; k < CHANNELS && !needed; ++k) needed = Mode(self, k, na) != Blend_Normal;
    for (k = 0; k < CHANNELS && !needed; ++k) needed = opacity[k] < 100.0;
    if (needed) inputs->evaluate(self->bgMaterial, na, &bg);
  }
  if (AnyUnconnected(self->fg)) {
    for (k = 0; k < CHANNELS && !shows; ++k) shows = opacity[k] > 0.0;
    if (shows) inputs->evaluate(self->fgMaterial, na, &fg);
  }
  for (k = 0; k < CHANNELS; ++k) {
    int m;
    if (k == TRANSPARENCY) {
      double b = bg.transparency, f = fg.transparency;
      inputs->evaluate(self->bg[k], na, &b);
      if (opacity[k] == 0.0) {
        result.transparency = b;
      } else {
        LWDVector r = {result.transparency, 0.0, 0.0}, bv = {b, 0.0, 0.0}, fv = {0.0, 0.0, 0.0};
        inputs->evaluate(self->fg[k], na, &f);
        fv[0] = f;
        m = Mode(self, k, na);
        utility->Blend(r, bv, fv, 1.0 - opacity[k], m < Blend_Normal ? Blend_Normal : m > Blend_Blue ? Blend_Blue : m);
        result.transparency = r[0];
      }
    } else {
      double *b = k == 0 ? bg.diffuse : k == 1 ? bg.specular : k == 2 ? bg.reflection : bg.refraction;
      double *f = k == 0 ? fg.diffuse : k == 1 ? fg.specular : k == 2 ? fg.reflection : fg.refraction;
      double *r = k == 0 ? result.diffuse : k == 1 ? result.specular : k == 2 ? result.reflection : result.refraction;
      inputs->evaluate(self->bg[k], na, b);
      if (opacity[k] == 0.0) {
        r[0] = b[0], r[1] = b[1], r[2] = b[2];
      } else {
        inputs->evaluate(self->fg[k], na, f);
        m = Mode(self, k, na);
        utility->Blend(r, b, f, 1.0 - opacity[k], m < Blend_Normal ? Blend_Normal : m > Blend_Blue ? Blend_Blue : m);
      }
    }
  }
  outputs->setValue(value, &result);
}

static const LWInstanceFuncs instanceFuncs = {NULL, Create, Destroy, PlainCopyNothing, PlainLoadNothing,
                                              PlainSaveNothing, PlainNoDescription};

static int Activate(int version, GlobalFunc *g, void *local, void *serverData) {
  LWNodeHandler *handler = local;
  PlainServices services;
  const int result = PlainActivate(version, g, local, &instanceFuncs, PlainBlender_Evaluate, &services);
  (void)serverData;
  if (result != AFUNC_OK) return result;
  inputs = services.inputs, outputs = services.outputs;
  utility = g(LWNODEUTILITYFUNCS_GLOBAL, GFUSE_TRANSIENT);
  if (!utility) return AFUNC_BADGLOBAL;
  if (version >= 2) handler->flags = Flags;
  return AFUNC_OK;
}

static ServerTagInfo tags[] = {{"Plain Material Blender", SRVTAG_USERNAME}, {NULL, 0}};
const ServerRecord plainBlenderRecord = {LWNODE_HCLASS, "plainMaterialBlender", Activate, tags};
