/* The module of plain-C reference nodes: its descriptor and its record table. */
#include <lwmodule.h>
#include <lwserver.h>

extern const ServerRecord plainTimeInfoRecord, plainCorrectorRecord, plainBlenderRecord,
    plainBoosterRecord, plainChannelBlenderRecord;

static ServerRecord records[6];

static void *Startup(void) {
  records[0] = plainTimeInfoRecord;
  records[1] = plainCorrectorRecord;
  records[2] = plainBlenderRecord;
  records[3] = plainBoosterRecord;
  records[4] = plainChannelBlenderRecord;
  return records;
}
static void Shutdown(void *serverData) { (void)serverData; }

__attribute__((visibility("default"))) ModuleDescriptor _mod_descrip = {MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE,
                                                                          Startup, Shutdown, records};
