#pragma once

// Instance layouts of the node test module, shared with the tests so they can see what the
// plug-ins received. Plain data only: both sides are built by the same compiler.

#include <lwnodes.h>
#include <lwrender.h>

// Servers (class NodeHandler unless noted):
//   "TestMix"      inputs Color (colour), Amount (scalar), Material (material); outputs Color,
//                  Silent (colour, never written), Material (its input's), Type (integer:
//                  getType of the request), Direct (colour, written through getValue). Has a
//                  NodeInterface that refuses versions 1 to 3. Its load always complains.
//   "TestRefuse"   adds an input and an output, then refuses creation with the text below.
//   "TestOldStyle" accepts only class version 1 and fills in create, destroy and evaluate only;
//                  its output Offered gives the class versions it was offered, as digits in order.
#define NODE_TEST_REFUSAL_TEXT "TestRefuse: the licence has expired"

struct MixInstance {
  NodeID node;  // the create context
  NodeInputID color, amount, material;
  NodeOutputID out, materialOut, type, direct;
  int hadItemFuncs;  // whether the activation's record had item functions

  // Input events in order, as "input event type". With dropInputsOnLoss set,
  // NIE_INPUTNODEDESTROY makes the plug-in destroy its Color and Amount inputs from inside the callback.
  int eventCount;
  char events[16][32];
  int dropInputsOnLoss;

  // The last evaluation of Color: what the input evaluations returned and left in the buffers,
  // which start at (0.1, 0.2, 0.3) and 1. The output is their product.
  int colorResult, amountResult;
  double colorSeen[3];
  double amountSeen;

  // useItems answers: 0 null, 1 LWITEM_ALL as the pointer, 2 usedList, 3 usedList with
  // LWITEM_ALL second. changeID keeps the ids it read, pair by pair, up to the end mark.
  int useMode;
  LWItemID usedList[4];
  int changedCount;
  LWItemID changed[16];

  int interfaceCalls;
  int interfaceVersions[8];  // every version offered
  int panelToken;            // its address is the panel handed back

  int initMode, cleanupCalls, previewWidth, previewHeight;
};
