#pragma once

// What the panel tests hand to the probe module's "ClassicProbe" activation, and what its panel's
// callbacks report back. Shared by the module and the tests; plain C layout.

// What the probe's callbacks saw, written straight into the test's record.
struct ClassicProbeLog {
  char events[2048];  // event hooks in order, each followed by '|'
  int countCalls;     // list-box count callback
  int nameCalls;      // list-box name callback
  int wrongUserData;  // list-box callbacks called with other data than the list box itself
  int handlerMisses;  // events whose handler could not be found through CTL_PANEL + PAN_USERDATA
};

struct ClassicProbeRequest {
  const char* op;  // "build", "open", "readback", "destroy"
  // build
  ClassicProbeLog* log;
  const char* const* rows;
  int rowCount;
  int throwFromName;  // the name callback throws (as a range-checked lookup does)
  // open
  int openFlags;
  // answers
  int result;     // open: its return value; readback: bits of the checks that passed
  void* panel;    // the LWPanelID built
  void* handler;  // the module's handler object
  void* list;     // the three controls' LWControl *
  void* clear;
  void* save;
  void* done;
};

// readback bits
#define PROBE_USERDATA_OK 1   // CTL_USERDATA read through an LWT_INTEGER value is the handler
#define PROBE_USEREVENT_OK 2  // CTL_USEREVENT read likewise is the event callback
#define PROBE_PANEL_OK 4      // CTL_PANEL read through an LWT_STRING value is the panel
#define PROBE_PANDATA_OK 8    // PAN_USERDATA of that panel is the handler
#define PROBE_LISTDATA_OK 16  // the list box's CTL_USERDATA is the list box itself
#define PROBE_ALL_OK 31
