#pragma once

#include <lwio.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lwhost/IOMode.h"

namespace lwhost {

// A load state handed to plug-ins, over data in memory in text or binary form. Reads never
// leave the data or the current block: malformed or truncated input makes the read functions
// return 0 or -1 as LightWave does, and each fault is noted with the source name and position.
//
// The data is the plug-in's whole region (depth 0); for a scene file that is the lines between
// "Plugin ..." and "EndPlugin", indentation included. setOrigin() makes the positions in
// problems() those of the enclosing file.
class BlockReader {
 public:
  BlockReader(IOMode mode, std::string data, std::string source = "<memory>");
  BlockReader(const BlockReader&) = delete;
  BlockReader& operator=(const BlockReader&) = delete;

  const LWLoadState* state() const { return &state_; }
  IOMode mode() const { return mode_; }
  // Faults met so far, each "source: line N: what" (text) or "source: offset N: what" (binary).
  const std::vector<std::string>& problems() const;
  // Blocks the plug-in has entered and not yet left.
  int depth() const { return static_cast<int>(open_.size()); }
  // The line number of the data's first line and the file offset of its first byte.
  void setOrigin(int firstLine, std::size_t firstOffset = 0);

 private:
  // A text line: its content without indentation or line break.
  struct Line {
    std::size_t begin;  // first non-blank character
    std::size_t end;    // before "\n" or "\r\n"
  };
  struct OpenBlock {
    LWID id;
    std::string name;       // token, or the printable ID
    bool nested;            // text: a "{ Token" block; leaf blocks are one line
    std::size_t line;       // text: the block's opening line
    std::size_t end;        // binary: offset just past the block, never past its parent's end
    bool unclosed = false;  // text: its missing "}" was already noted
  };
  struct Problem {
    std::size_t where;  // line index (text) or byte offset (binary) in the data
    std::string what;
  };

  friend struct BlockReaderAccess;

  bool text() const { return mode_ == IOMode::Ascii; }
  void note(std::size_t where, const std::string& what);
  void noteHere(const std::string& what);
  std::string currentBlock() const;
  void nothingLeft(const char* kind);
  void shortRead(const char* kind, int asked, int got, std::size_t at);  // binary

  // Text cursor.
  void split();
  bool atEnd() const { return line_ >= lines_.size(); }
  void moveToLine(std::size_t line);
  bool inLeaf() const;
  bool partlyRead() const;
  bool blank(std::size_t line) const;
  char lead(std::size_t line) const;  // first non-blank character
  // Skips to just past the "}" that closes the block the cursor is in; false at end of data.
  bool skipBlock();
  void noteUnclosed(OpenBlock& block);
  // How far value reads may go on the current line, or npos when the block has nothing left.
  std::size_t valueEnd();
  // Moves on to the next line once a line read outside a leaf block is used up.
  void afterValues();
  bool nextToken(std::size_t end, std::size_t* tokenEnd);

  // Binary cursor: the end of the innermost open block.
  std::size_t limit() const;

  LWID find(const LWBlockIdent* list);
  LWID findText(const LWBlockIdent* list);
  LWID findBinary(const LWBlockIdent* list);
  void end();
  int read(char* buffer, int length);
  int readString(char* buffer, int max);
  LWID readIdent(const LWBlockIdent* list);
  template <class T>
  int readValues(T* out, int n, const char* kind);

  LWLoadState state_;
  IOMode mode_;
  std::unique_ptr<char[]> storage_;
  std::string_view data_;
  std::string source_;
  std::vector<Problem> problems_;
  mutable std::vector<std::string> formatted_;
  std::vector<OpenBlock> open_;
  int firstLine_ = 1;
  std::size_t firstOffset_ = 0;

  std::vector<Line> lines_;
  std::size_t line_ = 0;  // current line
  std::size_t col_ = 0;   // next unread character
  std::size_t pos_ = 0;   // binary: next unread byte
};

}  // namespace lwhost
