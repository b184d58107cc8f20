#pragma once

#include <lwio.h>

namespace hostkit {

class Storeable;

// The host's load state, as handed to Load. Raw reads keep their result in lastResult.
class LoadState {
 public:
  explicit LoadState(const LWLoadState* s) : state(s) {}

  // Loads `item` from the block the caller has entered.
  LWError read(Storeable& item) const;

  // The next block of this level whose ID is in `ids` (0-terminated), entered; 0 when none is left.
  LWID findBlock(const LWBlockIdent* ids) const { return state->findBlk(state->readData, ids); }
  void endBlock() const { state->endBlk(state->readData); }

  int readI1(char* v, int n = 1) const { return lastResult = state->readI1(state->readData, v, n); }
  int readI2(short* v, int n = 1) const { return lastResult = state->readI2(state->readData, v, n); }
  int readI4(int* v, int n = 1) const { return lastResult = state->readI4(state->readData, v, n); }
  int readU1(unsigned char* v, int n = 1) const { return lastResult = state->readU1(state->readData, v, n); }
  int readU4(unsigned int* v, int n = 1) const { return lastResult = state->readU4(state->readData, v, n); }
  int readFP(float* v, int n = 1) const { return lastResult = state->readFP(state->readData, v, n); }
  int readStr(char* buffer, int max) const { return lastResult = state->readStr(state->readData, buffer, max); }

  const LWLoadState* state;
  mutable int lastResult = 0;
};

}  // namespace hostkit
