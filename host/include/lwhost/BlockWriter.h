#pragma once

#include <lwio.h>

#include <cstddef>
#include <string>
#include <vector>

#include "lwhost/IOMode.h"

namespace lwhost {

// A save state handed to plug-ins: writes LightWave's block format in text or binary form
// into memory. Text: leaf blocks are one line "Token v1 v2", nested blocks "{ Token" ... "}"
// indented two blanks per level; outside a leaf every write call is a line of its own.
// Binary: 4-byte ID, 2-byte big-endian size, big-endian numbers.
//
// To embed a plug-in's data in a scene file, the host writes its own "Plugin ..." line, hands
// the plug-in a writer whose baseDepth indents the data under it, calls finish() and writes
// "EndPlugin" after data(). Depths reported to the plug-in count its own blocks only.
//
// Misuse by the plug-in (endBlk with nothing open, a binary block over 65535 bytes, null
// arguments) never corrupts the output's structure; it is noted in problems().
class BlockWriter {
 public:
  explicit BlockWriter(IOMode mode, int baseDepth = 0);
  BlockWriter(const BlockWriter&) = delete;
  BlockWriter& operator=(const BlockWriter&) = delete;

  const LWSaveState* state() const { return &state_; }
  IOMode mode() const { return mode_; }
  // What was written so far (text or bytes).
  const std::string& data() const { return data_; }
  // Open blocks; 0 when balanced.
  int depth() const { return static_cast<int>(open_.size()); }
  // Closes whatever the plug-in left open (each one noted as a problem) so that the data
  // ends on a line boundary with balanced blocks.
  void finish();
  // Faults met so far, each "line N: what" (text) or "offset N: what" (binary).
  const std::vector<std::string>& problems() const { return problems_; }

 private:
  struct OpenBlock {
    LWID id;
    std::string token;  // binary: the printable ID, for messages
    bool leaf;
    std::size_t sizeAt;  // binary: where the size field waits to be patched
  };

  friend struct BlockWriterAccess;

  bool text() const { return mode_ == IOMode::Ascii; }
  void note(const std::string& what);
  void indent();
  // Starts a value list: joins the open leaf line, or begins a line of its own.
  void beginValues();
  // Ends a value list begun outside a leaf block.
  void endValues();
  void putBigEndian(unsigned long long value, int bytes);

  void begin(const LWBlockIdent* ident, bool leaf);
  void end();
  void raw(const char* bytes, int length);
  void string(const char* s);
  void ident(const LWBlockIdent* ident);
  template <class T>
  void values(const T* v, int n, const char* kind);

  LWSaveState state_;
  IOMode mode_;
  int baseDepth_;
  std::string data_;
  std::vector<OpenBlock> open_;
  std::vector<std::string> problems_;
  bool lineOpen_ = false;  // text: a leaf block's line has not been ended yet
};

}  // namespace lwhost
