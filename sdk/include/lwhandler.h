/*
 * lwhandler.h -- the instance table every handler fills, and the interface activation record.
 */
#ifndef LWSDK_HANDLER_H
#define LWSDK_HANDLER_H

#include <lwio.h>
#include <lwxpanel.h>

/* Filled by the plug-in.  create reports a refusal as NULL plus a message in *err. */
typedef struct st_LWInstanceFuncs {
  void *priv;
  LWInstance (*create)(void *priv, void *context, LWError *err);
  void (*destroy)(LWInstance inst);
  LWError (*copy)(LWInstance to, LWInstance from);
  LWError (*load)(LWInstance inst, const LWLoadState *ls);
  LWError (*save)(LWInstance inst, const LWSaveState *ss);
  const char *(*descln)(LWInstance inst);
} LWInstanceFuncs;

typedef struct st_LWHandler {
  LWInstanceFuncs *inst;
} LWHandler;

#define LWINTERFACE_VERSION 4

/* The host sets inst; the plug-in answers with a panel or, failing that, a modal options call. */
typedef struct st_LWInterface {
  LWInstance inst;
  LWXPanelID panel;
  LWError (*options)(LWInstance inst);
  LWError (*command)(LWInstance inst, const char *cmd);
} LWInterface;

/* Not a table: the global is this function, telling the host an instance has changed. */
#define LWINSTUPDATE_GLOBAL "Instance Update"

typedef void LWInstUpdate(const char *className, LWInstance inst);

#endif
