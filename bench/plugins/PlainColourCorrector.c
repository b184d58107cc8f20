/* The Simple Colour Corrector's "Colour" written directly against the SDK in plain C, with the
 * settings the instruction count uses (brightness 0.8, hue 0.6, saturation 0.5) held in the
 * instance as a panel would leave them: the reference vorn's corrector is counted against. */
#include <lwmodule.h>
#include <lwnodes.h>
#include <lwserver.h>
#include <math.h>
#include <stdlib.h>

#include "PlainNode.h"

static LWNodeInputFuncs *inputs;
static LWNodeOutputFuncs *outputs;

enum { COLOUR, SCALAR, BRIGHTNESS, CONTRAST, HUE, SATURATION, GAMMA, INVERT, INPUTS };

typedef struct {
  NodeID node;
  NodeInputID in[INPUTS];
  NodeOutputID colourOut;
  double colour[3], brightness, contrast, hue, saturation, gamma;
  int invert;
} PlainCorrector;

static LWInstance Create(void *priv, void *context, LWError *err) {
  static const char *const names[INPUTS] = {"Colour", "Scalar", "Brightness", "Contrast",
                                            "Hue",    "Saturation", "Gamma", "Invert"};
  PlainCorrector *self = calloc(1, sizeof *self);
  int k;
  (void)priv;
  if (!self) {
    *err = "out of memory";
    return NULL;
  }
  self->node = context;
  for (k = 0; k < INPUTS; ++k)
    self->in[k] = inputs->create(context, k == COLOUR ? NOT_COLOR : k == INVERT ? NOT_INTEGER : NOT_SCALAR,
                                 names[k], NULL);
  self->colourOut = outputs->create(context, NOT_COLOR, "Colour");
  self->brightness = 0.8, self->contrast = 1.0, self->hue = 0.6, self->saturation = 0.5, self->gamma = 1.0;
  return self;
}

static void Destroy(LWInstance inst) {
  PlainCorrector *self = inst;
  int k;
  for (k = 0; k < INPUTS; ++k) inputs->destroy(self->node, self->in[k]);
  outputs->destroy(self->node, self->colourOut);
  free(self);
}

static double Wrap(double x) {
  if (!isfinite(x)) return 0.0;
  if (fabs(x) > 1e6) {
    double turned = fmod(x, 6.0);
    x = turned == 0.0 && x > 0.0 ? 6.0 : turned;
  }
  while (x < 0.0) x += 6.0;
  while (x > 6.0) x -= 6.0;
  return x;
}

static void PlainCorrector_Evaluate(LWInstance inst, LWNodalAccess *na, NodeOutputID output, NodeValue value) {
  PlainCorrector *self = inst;
  double b = self->brightness, c = self->contrast, h = self->hue, s = self->saturation, g = self->gamma;
  double rgb[3];
  int inv = self->invert, k;
  inputs->evaluate(self->in[CONTRAST], na, &c);
  inputs->evaluate(self->in[BRIGHTNESS], na, &b);
  inputs->evaluate(self->in[HUE], na, &h);
  inputs->evaluate(self->in[SATURATION], na, &s);
  inputs->evaluate(self->in[GAMMA], na, &g);
  inputs->evaluate(self->in[INVERT], na, &inv);
  if (output != self->colourOut) return;
  rgb[0] = self->colour[0], rgb[1] = self->colour[1], rgb[2] = self->colour[2];
  inputs->evaluate(self->in[COLOUR], na, rgb);
  if (!(b == 1.0 && c == 1.0 && h == 0.0 && s == 1.0)) {
    double r = rgb[0], gr = rgb[1], bl = rgb[2];
    double mn = fmin(fmin(gr, bl), r), mx = fmax(fmax(gr, bl), r), delta = mx - mn, sat = 0.0, hue = 0.0, v;
    if (mx != 0.0) {
      sat = delta / mx;
      if (delta != 0.0) {
        double x = mx == r ? (gr - bl) / delta : mx == gr ? (bl - r) / delta + 2.0 : (r - gr) / delta + 4.0;
        if (x < 0.0) x += 6.0;
        hue = x * 1.0471975511965976;
      }
    }
    sat *= s;
    hue += h;
    v = c * (mx * b - 0.5) + 0.5;
    if (sat == 0.0) {
      rgb[0] = rgb[1] = rgb[2] = v;
    } else {
      double x = Wrap(hue * 0.954929658551372), f, p, q, t;
      int i = (int)x;
      f = x - i;
      p = v * (1.0 - sat), q = v * (1.0 - sat * f), t = v * (1.0 - sat * (1.0 - f));
      switch (i) {
        case 0: rgb[0] = v, rgb[1] = t, rgb[2] = p; break;
        case 1: rgb[0] = q, rgb[1] = v, rgb[2] = p; break;
        case 2: rgb[0] = p, rgb[1] = v, rgb[2] = t; break;
        case 3: rgb[0] = p, rgb[1] = q, rgb[2] = v; break;
        case 4: rgb[0] = t, rgb[1] = p, rgb[2] = v; break;
        default: rgb[0] = v, rgb[1] = p, rgb[2] = q; break;
      }
    }
  }
  if (g != 1.0)
    for (k = 0; k < 3; ++k) rgb[k] = pow(rgb[k], 1.0 / g);
  if (inv)
    for (k = 0; k < 3; ++k) rgb[k] = 1.0 - rgb[k];
  outputs->setValue(value, rgb);
}

static const LWInstanceFuncs instanceFuncs = {NULL, Create, Destroy, PlainCopyNothing, PlainLoadNothing,
                                              PlainSaveNothing, PlainNoDescription};

static int Activate(int version, GlobalFunc *g, void *local, void *serverData) {
  PlainServices services;
  const int result = PlainActivate(version, g, local, &instanceFuncs, PlainCorrector_Evaluate, &services);
  (void)serverData;
  if (result == AFUNC_OK) inputs = services.inputs, outputs = services.outputs;
  return result;
}

static ServerTagInfo tags[] = {{"Plain Colour Corrector", SRVTAG_USERNAME}, {NULL, 0}};
const ServerRecord plainCorrectorRecord = {LWNODE_HCLASS, "plainColourCorrector", Activate, tags};
