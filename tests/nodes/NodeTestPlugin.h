#pragma once

// Instance layouts of the node test module, shared with the tests so they can see what the
// plug-ins received. Plain data only: both sides are built by the same compiler.

#include <lwnodes.h>
#include <lwrender.h>

// Servers (class NodeHandler unless noted):
//   "TestMix"      inputs Color (colour), Amount (scalar), Material (material); outputs Color,
//                  Silent (colour, never written), Material, Type (integer: getType of the
//                  request), Direct (colour, written through getValue). Has a NodeInterface
//                  that refuses versions 1 to 3.
//   "TestRefuse"   adds an input and an output, then refuses creation with kRefusalText.
//   "TestOldStyle" accepts only class version 1; no description, save or load.
#define NODE_TEST_REFUSAL_TEXT "TestRefuse: the licence has expired"

struct MixEvent {
  void* userData;
  NodeInputID input;
  int event;
  int type;
};

struct MixInstance {
  NodeID node;  // the create context
  NodeInputID color, amount, material;
  NodeOutputID out, silent, materialOut, type, direct;
  int version;       // class version of the activation that made it
  int hadItemFuncs;  // whether that activation's record had item functions

  // Settings: saved, loaded, copied, described.
  double gain;
  int mode;
  char label[32];
  char description[96];

  // Input events, in order; on NIE_INPUTNODEDESTROY with dropInputsOnLoss set, the plug-in
  // destroys its Color and Amount inputs from inside the callback.
  int eventCount;
  MixEvent events[16];
  int dropInputsOnLoss;

  // The last evaluation of Color: what the input evaluations returned and left in the buffers,
  // which start at defaultColor and 1.0.
  double defaultColor[3];
  int colorResult, amountResult, materialResult;
  double colorSeen[3];
  double amountSeen;

  // Items: useMode 0 none, 1 LWITEM_ALL as the pointer, 2 the list usedList, 3 a list with
  // LWITEM_ALL inside.
  int useMode;
  LWItemID usedList[4];
  int changeCalls;
  int changedCount;  // entries read, pair by pair, up to the end mark
  LWItemID changed[16];

  // Interface activations, every version offered.
  int interfaceCalls;
  int interfaceVersions[8];
  int panelToken;  // its address is the panel handed back

  // Render session.
  int initCalls, initMode, cleanupCalls, newTimeFrame;
  double newTimeTime;
  int previewWidth, previewHeight;
};

struct OldStyleInstance {
  int offered[4];  // class versions the activation was offered, in order
  int offeredCount;
};
