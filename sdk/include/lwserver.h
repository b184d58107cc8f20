/*
 * lwserver.h -- server records, activation functions and the global lookup.
 */
#ifndef LWSDK_SERVER_H
#define LWSDK_SERVER_H

#include <lwtypes.h>

/* Every entry point uses the platform's default C calling convention. */
#define XCALL_(t) t
#define XCALL_INIT

typedef void *GlobalFunc(const char *serviceName, int useMode);

#define GFUSE_TRANSIENT 0
#define GFUSE_ACQUIRE 1
#define GFUSE_RELEASE 2

typedef int ActivateFunc(int version, GlobalFunc *global, void *local, void *serverData);

#define AFUNC_OK 0
#define AFUNC_BADVERSION 1
#define AFUNC_BADGLOBAL 2
#define AFUNC_BADLOCAL 3
#define AFUNC_BADAPP 4
#define AFUNC_BADAPP_SILENT 5

#define LANGID_GERMAN 0x0407
#define LANGID_USENGLISH 0x0409
#define LANGID_UKENGLISH 0x0809
#define LANGID_SPANISH 0x040a
#define LANGID_FRENCH 0x040c
#define LANGID_ITALIAN 0x0410
#define LANGID_JAPANESE 0x0411
#define LANGID_KOREAN 0x0412
#define LANGID_RUSSIAN 0x0419
#define LANGID_SWEDISH 0x041D

/* A tag is the kind in the upper 16 bits OR'ed with a language id. */
#define SRVTAG_USERNAME 0x00000
#define SRVTAG_BUTTONNAME 0x10000
#define SRVTAG_CMDGROUP 0x20000
#define SRVTAG_MENU 0x30000
#define SRVTAG_DESCRIPTION 0x40000
#define SRVTAG_ENABLE 0x50000
#define SRVTAG_SELECTCMD 0x60000
#define SRVTAG_NODEGROUP 0x70000

/* Arrays of tags end with a NULL string (a user name in language 0 has tag 0). */
typedef struct st_ServerTagInfo {
  const char *string;
  unsigned int tag;
} ServerTagInfo;

#define ServerUserName ServerTagInfo

/* Arrays of records end with a NULL class name. */
typedef struct st_ServerRecord {
  const char *className;
  const char *name;
  ActivateFunc *activate;
  ServerTagInfo *tagInfo;
} ServerRecord;

#endif
