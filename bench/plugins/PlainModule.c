/* The module of plain-C reference nodes: its descriptor and its record table. */
#include <lwmodule.h>
#include <lwserver.h>

extern const ServerRecord plainTimeInfoRecord, plainCorrectorRecord, plainBlenderRecord;

static ServerRecord records[4];

static void *Startup(void) {
  records[0] = plainTimeInfoRecord;
  records[1] = plainCorrectorRecord;
  records[2] = plainBlenderRecord;
  return records;
}
static void Shutdown(void *serverData) { (void)serverData; }

__attribute__((visibility("default"))) ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE,
                                                                          Startup, Shutdown, records};
