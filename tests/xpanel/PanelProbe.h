#pragma once

// What the tests and the panel probe module share: the probe's panel ids, its instance data and
// the request its activation takes.
#include <lwxpanel.h>

#define PANEL_PROBE_CLASS "XPanelProbe"
#define PANEL_PROBE_NAME "view"

enum PanelProbeId : unsigned int {
  kProbeCount = 0x9000,  // "integer" / "integer"
  kProbeEnabled,         // "iBoolean" / "Integer" (capitalised on purpose)
  kProbeMode,            // "iPopChoice" with XpSTRLIST
  kProbeLight,           // "iPopChoice" with XpPOPFUNCS
  kProbeOpacity,         // "percent-env" / "float-env"
  kProbeReset,           // "vButton"
  kProbePreview,         // "dThumbnail"
  kProbeScale,           // "float" / "float"; hidden (get answers NULL) on request
  kProbeSpin,            // "angle" / "angle"
  kProbeTint,            // "color-env" / "float3-env"
  kProbeName,            // "string" / "string"
};

// The probe's single instance; the tests read and change it directly.
struct PanelProbeState {
  int count;
  int enabled;
  int mode;
  int light;
  void* opacity;  // LWVParmID, when the host has "LWVParmFuncs 2"
  void* tint;
  double scale;
  double spin;
  char name[32];
  int hideScale;       // get answers NULL for kProbeScale
  int setResult;       // what the set callback answers
  int destroyOnClick;  // the button destroys the panel from inside its callback
  void* lastArea;      // the last drawing area the draw callback was given
};

typedef void PanelProbeLog(void* context, const char* event);

struct PanelProbeRequest {
  const char* op;  // "build": make the view panel; "draw-stale": draw with lastArea after the fact
  PanelProbeLog* log;
  void* logContext;
  LWXPanelID panel;        // out
  PanelProbeState* state;  // out
  int result;              // out: 1 done, 0 failed
};
