/*
 * lwmodule.h -- the descriptor a plug-in module exports as _mod_descrip.
 */
#ifndef LWSDK_MODULE_H
#define LWSDK_MODULE_H

#include <lwserver.h>

typedef struct st_ModuleDescriptor {
  unsigned int sysSync;
  unsigned int sysVersion;
  unsigned int sysMachine;
  void *(*startup)(void);
  void (*shutdown)(void *);
  ServerRecord *serverDefs;
} ModuleDescriptor;

#define MOD_SYSSYNC 0x04121994
#define MOD_SYSVER 3

/* The machine word names the platform family; 64-bit builds share their family's code. */
#if defined(_MACOS) || (!defined(_XGL) && !defined(_MSWIN) && defined(__APPLE__))
#define MOD_MACHINE 0x400
#elif defined(_MSWIN) || (!defined(_XGL) && defined(_WIN32))
#if defined(_ALPHA_)
#define MOD_MACHINE 0x302
#else
#define MOD_MACHINE 0x300
#endif
#else
#define MOD_MACHINE 0x200
#endif

#endif
