#pragma once

// Shared by the tests and the probe module's "ClassicProbe" server.

// The rows of the probe's list box.
static const char* const kProbeRows[] = {"   12 - SaveScene\n", "    7 - RenderFrame\n", "    3 - Undo\n"};

// What the probe's callbacks saw, written straight into the test's record.
struct ClassicProbeLog {
  char events[2048];  // event hooks in order, each followed by '|'
  int wrongUserData;  // list-box callbacks called with other data than the list box itself
};

struct ClassicProbeRequest {
  const char* op;        // "build" the panel, or "open" it
  ClassicProbeLog* log;  // build: where the callbacks report
  int throwFromName;     // build: the name callback throws (as a range-checked lookup does)
  int openFlags;         // open
  int result = 0;        // open: its return value
  // build, out: the panel, the handler object in its user data, the buttons' event hook and the
  // controls (list box "Rows", buttons "Clear" and "Done", save button "Save...").
  void* panel = nullptr;
  void* handler = nullptr;
  void* buttonEvent = nullptr;
  void* list = nullptr;
  void* clear = nullptr;
  void* save = nullptr;
};
