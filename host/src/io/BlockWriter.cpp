#include "lwhost/BlockWriter.h"

#include <algorithm>
#include <cstring>

#include "BlockFormat.h"

namespace lwhost {

void BlockWriter::finish() {
  while (!open_.empty()) {
    note("block " + open_.back().token + " was never ended");
    end();
  }
}

void BlockWriter::note(const std::string& what) {
  if (problems_.size() >= io::kMaxProblems) return;
  std::string where;
  if (text())
    where = "line " + std::to_string(std::count(data_.begin(), data_.end(), '\n') + 1);
  else
    where = "offset " + std::to_string(data_.size());
  problems_.push_back(where + ": " + what);
}

void BlockWriter::indent() { data_.append(2 * static_cast<std::size_t>(baseDepth_ + depth()), ' '); }

void BlockWriter::beginValues() {
  if (lineOpen_)
    data_ += ' ';
  else
    indent();
}

void BlockWriter::endValues() {
  if (!lineOpen_) data_ += '\n';
}

void BlockWriter::putBigEndian(unsigned long long value, int bytes) {
  for (int i = bytes - 1; i >= 0; --i) data_ += static_cast<char>((value >> (8 * i)) & 0xFF);
}

void BlockWriter::begin(const LWBlockIdent* ident, bool leaf) {
  OpenBlock block{0, "?", leaf, 0};
  if (!ident) {
    note("beginBlk given no block ident");
  } else {
    block.id = ident->id;
    if (text()) {
      if (!ident->token || !*ident->token)
        note("beginBlk given a block ident without a token");
      else
        block.token = ident->token;
      if (block.token.find_first_of(" \t\r\n") != std::string::npos)
        note("block token \"" + block.token + "\" contains blanks and cannot be read back");
    } else {
      block.token = io::IdName(block.id);
    }
  }

  if (!text()) {
    putBigEndian(block.id, 4);
    block.sizeAt = data_.size();
    putBigEndian(0, 2);  // patched by endBlk
    open_.push_back(block);
    return;
  }

  if (lineOpen_) {
    // Leaf lines cannot hold blocks; end the line so the new block keeps its own.
    note("block " + block.token + " begun inside leaf block " + open_.back().token);
    data_ += '\n';
    lineOpen_ = false;
  }
  indent();
  if (leaf) {
    data_ += block.token;
    lineOpen_ = true;
  } else {
    data_ += "{ ";
    data_ += block.token;
    data_ += '\n';
  }
  open_.push_back(block);
}

void BlockWriter::end() {
  if (open_.empty()) {
    note("endBlk with no open block");
    return;
  }
  OpenBlock block = open_.back();
  open_.pop_back();

  if (!text()) {
    std::size_t size = data_.size() - (block.sizeAt + 2);
    if (size > 0xFFFF) {
      note("block " + block.token + " holds " + std::to_string(size) +
           " bytes; a binary block holds at most 65535");
      size = 0xFFFF;
    }
    data_[block.sizeAt] = static_cast<char>(size >> 8);
    data_[block.sizeAt + 1] = static_cast<char>(size & 0xFF);
    return;
  }

  if (lineOpen_) {
    data_ += '\n';
    lineOpen_ = false;
  }
  if (!block.leaf) {
    indent();
    data_ += "}\n";
  }
}

void BlockWriter::raw(const char* bytes, int length) {
  if (!bytes) {
    if (length != 0) note("write given no buffer");
    return;
  }
  if (text()) {
    // Text mode takes the buffer as a C string, whatever the length says.
    std::size_t n = std::strlen(bytes);
    if (n == 0) {
      if (!lineOpen_) data_ += '\n';
      return;
    }
    beginValues();
    data_.append(bytes, n);
    endValues();
    return;
  }
  if (length < 0) {
    note("write given a negative length");
    return;
  }
  data_.append(bytes, static_cast<std::size_t>(length));
}

void BlockWriter::string(const char* s) {
  if (!s) {
    note("writeStr given no string");
    s = "";
  }
  std::string value(s);
  if (text()) {
    if (value.find('"') != std::string::npos)
      note("string contains a double quote and cannot be read back intact");
    if (value.find_first_of("\r\n") != std::string::npos) {
      note("string contains a line break; written as a blank");
      std::replace(value.begin(), value.end(), '\n', ' ');
      std::replace(value.begin(), value.end(), '\r', ' ');
    }
    beginValues();
    data_ += '"';
    data_ += value;
    data_ += '"';
    endValues();
    return;
  }
  data_.append(value.c_str(), value.size() + 1);
  if ((value.size() + 1) % 2) data_ += '\0';  // keep the next value on an even offset
}

void BlockWriter::ident(const LWBlockIdent* ident) {
  if (!ident) {
    note("writeID given no block ident");
    return;
  }
  if (!text()) {
    putBigEndian(ident->id, 4);
    return;
  }
  if (!ident->token || !*ident->token) {
    note("writeID given a block ident without a token");
    return;
  }
  beginValues();
  data_ += ident->token;
  endValues();
}

template <class T>
void BlockWriter::values(const T* v, int n, const char* kind) {
  if (n < 0 || (!v && n > 0)) {
    note(std::string(kind) + (n < 0 ? " given a negative count" : " given no values"));
    return;
  }
  if (n == 0) return;
  if (!text()) {
    for (int i = 0; i < n; ++i) putBigEndian(io::Bits(v[i]), sizeof(T));
    return;
  }
  beginValues();
  for (int i = 0; i < n; ++i) {
    if (i) data_ += ' ';
    io::AppendText(data_, v[i]);
  }
  endValues();
}

// The C entry points of the save state. A plug-in module is never unwound through: anything
// thrown (only allocation can) is caught here and noted.
struct BlockWriterAccess {
  template <class F>
  static void Guard(void* data, F&& f) noexcept {
    if (!data) return;
    BlockWriter& w = *static_cast<BlockWriter*>(data);
    try {
      f(w);
    } catch (...) {
      try {
        w.note("out of memory while writing");
      } catch (...) {
      }
    }
  }

  static void Write(void* d, const char* buf, int len) {
    Guard(d, [&](BlockWriter& w) { w.raw(buf, len); });
  }
  static void WriteI1(void* d, const char* v, int n) {
    Guard(d, [&](BlockWriter& w) { w.values(v, n, "writeI1"); });
  }
  static void WriteI2(void* d, const short* v, int n) {
    Guard(d, [&](BlockWriter& w) { w.values(v, n, "writeI2"); });
  }
  static void WriteI4(void* d, const int* v, int n) {
    Guard(d, [&](BlockWriter& w) { w.values(v, n, "writeI4"); });
  }
  static void WriteU1(void* d, const unsigned char* v, int n) {
    Guard(d, [&](BlockWriter& w) { w.values(v, n, "writeU1"); });
  }
  static void WriteU2(void* d, const unsigned short* v, int n) {
    Guard(d, [&](BlockWriter& w) { w.values(v, n, "writeU2"); });
  }
  static void WriteU4(void* d, const unsigned int* v, int n) {
    Guard(d, [&](BlockWriter& w) { w.values(v, n, "writeU4"); });
  }
  static void WriteFP(void* d, const float* v, int n) {
    Guard(d, [&](BlockWriter& w) { w.values(v, n, "writeFP"); });
  }
  static void WriteDP(void* d, const double* v, int n) {
    Guard(d, [&](BlockWriter& w) { w.values(v, n, "writeDP"); });
  }
  static void WriteStr(void* d, const char* s) {
    Guard(d, [&](BlockWriter& w) { w.string(s); });
  }
  static void WriteID(void* d, const LWBlockIdent* b) {
    Guard(d, [&](BlockWriter& w) { w.ident(b); });
  }
  static void BeginBlk(void* d, const LWBlockIdent* b, int leaf) {
    Guard(d, [&](BlockWriter& w) { w.begin(b, leaf != 0); });
  }
  static void EndBlk(void* d) {
    Guard(d, [&](BlockWriter& w) { w.end(); });
  }
  static int Depth(void* d) { return d ? static_cast<BlockWriter*>(d)->depth() : 0; }
};

BlockWriter::BlockWriter(IOMode mode, int baseDepth) : mode_(mode), baseDepth_(std::max(baseDepth, 0)) {
  state_.ioMode = static_cast<int>(mode);
  state_.writeData = this;
  state_.write = BlockWriterAccess::Write;
  state_.writeI1 = BlockWriterAccess::WriteI1;
  state_.writeI2 = BlockWriterAccess::WriteI2;
  state_.writeI4 = BlockWriterAccess::WriteI4;
  state_.writeU1 = BlockWriterAccess::WriteU1;
  state_.writeU2 = BlockWriterAccess::WriteU2;
  state_.writeU4 = BlockWriterAccess::WriteU4;
  state_.writeFP = BlockWriterAccess::WriteFP;
  state_.writeStr = BlockWriterAccess::WriteStr;
  state_.writeID = BlockWriterAccess::WriteID;
  state_.beginBlk = BlockWriterAccess::BeginBlk;
  state_.endBlk = BlockWriterAccess::EndBlk;
  state_.depth = BlockWriterAccess::Depth;
  state_.writeDP = BlockWriterAccess::WriteDP;
}

}  // namespace lwhost
