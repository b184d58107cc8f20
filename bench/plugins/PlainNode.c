#include "PlainNode.h"

#include <lwmodule.h>

LWError PlainCopyNothing(LWInstance to, LWInstance from) { (void)to, (void)from; return NULL; }
LWError PlainLoadNothing(LWInstance inst, const LWLoadState *ls) { (void)inst, (void)ls; return NULL; }
LWError PlainSaveNothing(LWInstance inst, const LWSaveState *ss) { (void)inst, (void)ss; return NULL; }
const char *PlainNoDescription(LWInstance inst) { (void)inst; return ""; }

int PlainActivate(int version, GlobalFunc *global, void *local, const LWInstanceFuncs *inst,
                  void (*evaluate)(LWInstance, LWNodalAccess *, NodeOutputID, NodeValue),
                  PlainServices *services) {
  LWNodeHandler *handler = local;
  if (version < 1) return AFUNC_BADVERSION;
  services->inputs = global(LWNODEINPUTFUNCS_GLOBAL, GFUSE_TRANSIENT);
  services->outputs = global(LWNODEOUTPUTFUNCS_GLOBAL, GFUSE_TRANSIENT);
  if (!services->inputs || !services->outputs) return AFUNC_BADGLOBAL;
  *handler->inst = *inst;
  handler->evaluate = evaluate;
  return AFUNC_OK;
}
