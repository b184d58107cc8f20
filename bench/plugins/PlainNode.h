/* What the plain-C reference nodes share: the instance functions of a node that keeps nothing
 * in a scene, and the activation of a node handler. */
#ifndef PLAIN_NODE_H
#define PLAIN_NODE_H

#include <lwnodes.h>
#include <lwserver.h>

typedef struct {
  LWNodeInputFuncs *inputs;
  LWNodeOutputFuncs *outputs;
} PlainServices;

LWError PlainCopyNothing(LWInstance to, LWInstance from);
LWError PlainLoadNothing(LWInstance inst, const LWLoadState *ls);
LWError PlainSaveNothing(LWInstance inst, const LWSaveState *ss);
const char *PlainNoDescription(LWInstance inst);

/* Looks up the node services into `services` and fills the handler with `inst` and `evaluate`;
 * AFUNC_*. Each node copies the services into pointers of its own file, which the compiler keeps
 * as cheap to read as a hand-written node's. */
int PlainActivate(int version, GlobalFunc *global, void *local, const LWInstanceFuncs *inst,
                  void (*evaluate)(LWInstance, LWNodalAccess *, NodeOutputID, NodeValue),
                  PlainServices *services);

#endif
