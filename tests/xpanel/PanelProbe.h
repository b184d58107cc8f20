#pragma once

// Shared by the tests and the panel probe module: the probe's ids, its instance and its request.
#include <lwxpanel.h>

enum PanelProbeId : unsigned int {
  kProbeCount = 0x9000,  // "integer"
  kProbeMode,            // "iPopChoice" with XpSTRLIST
  kProbeLight,           // "iPopChoice" with XpPOPFUNCS
  kProbeOpacity,         // "percent-env" / "float-env"
  kProbeReset,           // "vButton"
  kProbePreview,         // "dThumbnail"
  kProbeScale,           // "float"
  kProbeSpin,            // "angle"
  kProbeTint,            // "color-env" / "float3-env"
  kProbeName,            // "string"
};

// The probe's single instance; the tests read and change it directly.
struct PanelProbeState {
  int count, mode, light;
  void *opacity, *tint;  // LWVParmIDs, when the host has "LWVParmFuncs 2"
  double scale, spin;
  char name[32];
  int hideScale;       // get answers NULL for kProbeScale
  int setResult;       // what the set callback answers
  int destroyOnClick;  // the button destroys the panel from inside its callback
  void* lastArea;      // the area the draw callback was last given
};

typedef void PanelProbeLog(void* context, const char* event);

// What activating the probe takes: it builds its view panel and hands it back.
struct PanelProbeRequest {
  PanelProbeLog* log;
  void* logContext;
  LWXPanelID panel;        // out
  PanelProbeState* state;  // out
};
