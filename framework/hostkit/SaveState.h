#pragma once

#include <lwio.h>

namespace hostkit {

class Storeable;

// The host's save state, as handed to Save.
class SaveState {
 public:
  explicit SaveState(const LWSaveState* s) : state(s) {}

  // Writes `item` as one block. `leaf` goes to the host unchanged: true for plain data, false
  // when the block may hold nested blocks (every parameter: the host nests its own data).
  void WriteItem(const LWBlockIdent& id, Storeable& item, bool leaf) const;
  void WriteItem(const LWBlockIdent& id, Storeable* item, bool leaf) const { WriteItem(id, *item, leaf); }

  void beginBlock(const LWBlockIdent& id, bool leaf) const { state->beginBlk(state->writeData, &id, leaf ? 1 : 0); }
  void endBlock() const { state->endBlk(state->writeData); }

  void writeI2(const short* v, int n = 1) const { state->writeI2(state->writeData, v, n); }
  void writeI4(const int* v, int n = 1) const { state->writeI4(state->writeData, v, n); }
  void writeU1(const unsigned char* v, int n = 1) const { state->writeU1(state->writeData, v, n); }
  void writeU4(const unsigned int* v, int n = 1) const { state->writeU4(state->writeData, v, n); }
  void writeStr(const char* s) const { state->writeStr(state->writeData, s); }

  const LWSaveState* state;
};

}  // namespace hostkit
