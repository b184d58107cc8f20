/* A module file that is wrong in exactly one way, chosen at compile time. */
#include <lwmodule.h>

#ifndef SYNC_WORD
#define SYNC_WORD MOD_SYSSYNC
#endif
#ifndef SYSTEM_VERSION
#define SYSTEM_VERSION MOD_SYSVER
#endif
#ifndef MACHINE_WORD
#define MACHINE_WORD MOD_MACHINE
#endif
#ifndef STARTUP_RESULT
#define STARTUP_RESULT ((void *)4)
#endif

static ServerRecord records[] = {{0, 0, 0, 0}};

static void *Startup(void) { return STARTUP_RESULT; }
static void Shutdown(void *serverData) { (void)serverData; }

#ifdef NO_DESCRIPTOR
__attribute__((visibility("default"))) void *not_a_descriptor[] = {(void *)Startup, (void *)Shutdown, records};
#else
__attribute__((visibility("default"))) ModuleDescriptor _mod_descrip = {
    SYNC_WORD, SYSTEM_VERSION, MACHINE_WORD, Startup, Shutdown, records};
#endif
