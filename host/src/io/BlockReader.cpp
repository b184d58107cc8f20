#include "lwhost/BlockReader.h"

#include <algorithm>
#include <cstring>

#include "BlockFormat.h"

namespace lwhost {

namespace {

constexpr std::size_t kNone = std::string::npos;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

const LWBlockIdent* ByToken(const LWBlockIdent* list, const char* token, std::size_t length) {
  if (length == 0) return nullptr;
  for (; list->id; ++list)
    if (list->token && std::strlen(list->token) == length && std::memcmp(list->token, token, length) == 0)
      return list;
  return nullptr;
}

std::uint64_t BigEndian(const char* bytes, std::size_t count) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < count; ++i) value = (value << 8) | static_cast<unsigned char>(bytes[i]);
  return value;
}

const LWBlockIdent* ById(const LWBlockIdent* list, LWID id) {
  for (; list->id; ++list)
    if (list->id == id) return list;
  return nullptr;
}

}  // namespace

// ---- Problems -------------------------------------------------------------------------------

void BlockReader::setOrigin(int firstLine, std::size_t firstOffset) {
  firstLine_ = firstLine;
  firstOffset_ = firstOffset;
  formatted_.clear();
}

const std::vector<std::string>& BlockReader::problems() const {
  // Formatted on demand so that setOrigin() applies to faults found before it was called.
  if (formatted_.size() != problems_.size()) {
    formatted_.clear();
    for (const Problem& p : problems_) {
      std::string where = text() ? "line " + std::to_string(firstLine_ + static_cast<long long>(p.where))
                                 : "offset " + std::to_string(firstOffset_ + p.where);
      formatted_.push_back(source_ + ": " + where + ": " + p.what);
    }
  }
  return formatted_;
}

void BlockReader::note(std::size_t where, const std::string& what) {
  if (problems_.size() < io::kMaxProblems) problems_.push_back(Problem{where, what});
}

void BlockReader::noteHere(const std::string& what) {
  if (!text()) {
    note(pos_, what);
    return;
  }
  // Past the last line, the last line is the best place to point at.
  note(lines_.empty() ? 0 : std::min(line_, lines_.size() - 1), what);
}

std::string BlockReader::currentBlock() const {
  if (open_.empty()) return "the data";
  return "block " + open_.back().name;
}

void BlockReader::nothingLeft(const char* kind) {
  noteHere(std::string(kind) + ": nothing left to read in " + currentBlock());
}

// ---- Text cursor ----------------------------------------------------------------------------

void BlockReader::split() {
  std::size_t start = 0;
  while (start < data_.size()) {
    std::size_t newline = data_.find('\n', start);
    std::size_t stop = newline == kNone ? data_.size() : newline;
    std::size_t end = stop;
    if (end > start && data_[end - 1] == '\r') --end;
    std::size_t begin = start;
    while (begin < end && IsBlank(data_[begin])) ++begin;
    lines_.push_back(Line{begin, end});
    if (newline == kNone) {
      // Every writer ends its lines; a missing break is the usual sign of a cut-off file.
      note(lines_.size() - 1, "the last line has no line break (truncated data?)");
      break;
    }
    start = newline + 1;
  }
  moveToLine(0);
}

void BlockReader::moveToLine(std::size_t line) {
  line_ = std::min(line, lines_.size());
  col_ = atEnd() ? data_.size() : lines_[line_].begin;
}

bool BlockReader::inLeaf() const { return !open_.empty() && !open_.back().nested; }

bool BlockReader::partlyRead() const { return !atEnd() && col_ > lines_[line_].begin; }

bool BlockReader::blank(std::size_t line) const { return lines_[line].begin == lines_[line].end; }

char BlockReader::lead(std::size_t line) const { return blank(line) ? ' ' : data_[lines_[line].begin]; }

bool BlockReader::skipBlock() {
  int level = 0;
  for (; !atEnd(); moveToLine(line_ + 1)) {
    char c = lead(line_);
    if (c == '{') {
      ++level;
    } else if (c == '}') {
      if (level == 0) {
        moveToLine(line_ + 1);
        return true;
      }
      --level;
    }
  }
  return false;
}

void BlockReader::noteUnclosed(OpenBlock& block) {
  if (block.unclosed) return;
  block.unclosed = true;
  note(block.line, "block " + block.name + " is never closed (missing '}')");
}

std::size_t BlockReader::valueEnd() {
  if (inLeaf()) return lines_[line_].end;
  // Between blocks, blank lines hold no values.
  while (!atEnd() && !partlyRead() && blank(line_)) moveToLine(line_ + 1);
  if (atEnd()) return kNone;
  if (!open_.empty() && !partlyRead() && lead(line_) == '}') return kNone;
  return lines_[line_].end;
}

void BlockReader::afterValues() {
  if (inLeaf() || atEnd()) return;
  while (col_ < lines_[line_].end && IsBlank(data_[col_])) ++col_;
  if (col_ >= lines_[line_].end) moveToLine(line_ + 1);
}

bool BlockReader::nextToken(std::size_t end, std::size_t* tokenEnd) {
  if (end == kNone) return false;
  while (col_ < end && IsBlank(data_[col_])) ++col_;
  if (col_ >= end) return false;
  std::size_t e = col_;
  while (e < end && !IsBlank(data_[e])) ++e;
  *tokenEnd = e;
  return true;
}

// ---- Binary cursor --------------------------------------------------------------------------

std::size_t BlockReader::limit() const { return open_.empty() ? data_.size() : open_.back().end; }

void BlockReader::shortRead(const char* kind, int asked, int got, std::size_t at) {
  note(at, std::string(kind) + ": reading past the end of " + currentBlock() + " (asked for " +
               std::to_string(asked) + ", " + std::to_string(got) + " there)");
}

// ---- Blocks ---------------------------------------------------------------------------------

LWID BlockReader::find(const LWBlockIdent* list) {
  if (!list) {
    noteHere("findBlk given no block list");
    return 0;
  }
  return text() ? findText(list) : findBinary(list);
}

LWID BlockReader::findText(const LWBlockIdent* list) {
  if (inLeaf()) return 0;  // a leaf line holds no blocks
  if (partlyRead()) moveToLine(line_ + 1);
  while (!atEnd()) {
    if (blank(line_)) {
      moveToLine(line_ + 1);
      continue;
    }
    const Line& l = lines_[line_];
    const char c = lead(line_);
    if (c == '}') {
      // The enclosing block's end is left for its endBlk.
      if (!open_.empty()) return 0;
      note(line_, "'}' without a matching '{'");
      moveToLine(line_ + 1);
      continue;
    }
    if (c == '{') {
      std::size_t b = l.begin + 1;
      while (b < l.end && IsBlank(data_[b])) ++b;
      std::size_t e = b;
      while (e < l.end && !IsBlank(data_[e])) ++e;
      std::string token(data_.substr(b, e - b));
      std::size_t opened = line_;
      moveToLine(line_ + 1);
      if (const LWBlockIdent* found = ByToken(list, token.data(), token.size())) {
        open_.push_back(OpenBlock{found->id, token, true, opened, 0});
        return found->id;
      }
      if (!skipBlock())
        note(opened, "block " + (token.empty() ? "{" : token) + " is never closed (missing '}')");
      continue;
    }
    std::size_t e = l.begin;
    while (e < l.end && !IsBlank(data_[e])) ++e;
    if (const LWBlockIdent* found = ByToken(list, data_.data() + l.begin, e - l.begin)) {
      open_.push_back(OpenBlock{found->id, std::string(data_.substr(l.begin, e - l.begin)), false, line_, 0});
      // Values start after the one blank that separates them from the token.
      col_ = e < l.end ? e + 1 : e;
      return found->id;
    }
    moveToLine(line_ + 1);  // an unknown leaf block or a stray data line
  }
  if (!open_.empty()) noteUnclosed(open_.back());
  return 0;
}

LWID BlockReader::findBinary(const LWBlockIdent* list) {
  const std::size_t end = limit();
  while (pos_ < end) {
    std::size_t left = end - pos_;
    if (left < 6) {
      note(pos_,
           std::to_string(left) + " stray byte(s) where a block header was expected in " + currentBlock());
      pos_ = end;
      break;
    }
    const LWID id = static_cast<LWID>(BigEndian(data_.data() + pos_, 4));
    const std::size_t size = static_cast<std::size_t>(BigEndian(data_.data() + pos_ + 4, 2));
    std::size_t blockEnd = pos_ + 6 + size;
    if (blockEnd > end) {
      // Keep the damage inside: the block ends where its parent (or the data) does.
      note(pos_, "block " + io::IdName(id) + " claims " + std::to_string(size) + " bytes but only " +
                     std::to_string(left - 6) + " remain in " + currentBlock());
      blockEnd = end;
    }
    if (ById(list, id)) {
      open_.push_back(OpenBlock{id, io::IdName(id), true, 0, blockEnd});
      pos_ += 6;
      return id;
    }
    pos_ = blockEnd;
  }
  return 0;
}

void BlockReader::end() {
  if (open_.empty()) {
    noteHere("endBlk with no open block");
    return;
  }
  if (!text()) {
    pos_ = open_.back().end;
    open_.pop_back();
    return;
  }
  OpenBlock& block = open_.back();
  if (!block.nested) {
    moveToLine(block.line + 1);
  } else {
    if (partlyRead()) moveToLine(line_ + 1);
    if (!skipBlock()) noteUnclosed(block);
  }
  open_.pop_back();
}

// ---- Values ---------------------------------------------------------------------------------

template <class T>
int BlockReader::readValues(T* out, int n, const char* kind) {
  if (n < 0 || (!out && n > 0)) {
    noteHere(std::string(kind) + (n < 0 ? " given a negative count" : " given no buffer"));
    return 0;
  }
  if (n == 0) return 0;

  if (!text()) {
    const std::size_t start = pos_;
    const std::size_t available = (limit() - pos_) / sizeof(T);
    const int got = static_cast<int>(std::min<std::size_t>(static_cast<std::size_t>(n), available));
    for (int i = 0; i < got; ++i, pos_ += sizeof(T))
      out[i] = io::FromBits<T>(BigEndian(data_.data() + pos_, sizeof(T)));
    if (got < n) shortRead(kind, n, got, start);
    return got;
  }

  // Line-buffered: a short line gives a short count, never values from the next line.
  const std::size_t end = valueEnd();
  int got = 0;
  std::size_t tokenEnd = 0;
  bool malformed = false;
  while (got < n && nextToken(end, &tokenEnd)) {
    io::Parse p = io::ParseText(data_.data() + col_, data_.data() + tokenEnd, &out[got]);
    if (p != io::Parse::Ok) {
      // Left unread: the plug-in may still take it with readStr.
      note(line_, std::string(kind) + ": \"" + std::string(data_.substr(col_, tokenEnd - col_)) + "\" is " +
                      (p == io::Parse::OutOfRange ? "out of range" : "not a number"));
      malformed = true;
      break;
    }
    col_ = tokenEnd;
    ++got;
  }
  if (got == 0 && !malformed) nothingLeft(kind);
  afterValues();
  return got;
}

int BlockReader::readString(char* buffer, int max) {
  if (!buffer || max < 0) {
    noteHere(!buffer ? "readStr given no buffer" : "readStr given a negative size");
    return 0;
  }
  if (max == 0) return 0;  // not even the terminator fits
  buffer[0] = '\0';

  std::size_t begin = 0, length = 0;
  if (text()) {
    const std::size_t end = valueEnd();
    std::size_t tokenEnd = 0;
    if (!nextToken(end, &tokenEnd)) {
      nothingLeft("readStr");
      afterValues();
      return 0;
    }
    if (data_[col_] == '"') {
      begin = col_ + 1;
      std::size_t quote = data_.find('"', begin);
      if (quote == kNone || quote >= end) {
        note(line_, "readStr: string has no closing quote");
        quote = end;
        col_ = end;
      } else {
        col_ = quote + 1;
      }
      length = quote - begin;
    } else {
      begin = col_;
      length = tokenEnd - col_;
      col_ = tokenEnd;
    }
    afterValues();
  } else {
    const std::size_t end = limit();
    if (pos_ >= end) {
      nothingLeft("readStr");
      return 0;
    }
    begin = pos_;
    const void* nul = std::memchr(data_.data() + pos_, '\0', end - pos_);
    if (!nul) {
      noteHere("readStr: string runs past the end of " + currentBlock() + " without a terminating NUL");
      length = end - pos_;
      pos_ = end;
    } else {
      length = static_cast<const char*>(nul) - (data_.data() + pos_);
      pos_ += length + 1;
      // The pad byte that keeps an odd-sized string even; only a zero byte can be one.
      if ((length + 1) % 2 && pos_ < end && data_[pos_] == '\0') ++pos_;
    }
  }

  const std::size_t kept = std::min(length, static_cast<std::size_t>(max) - 1);
  std::memcpy(buffer, data_.data() + begin, kept);
  buffer[kept] = '\0';
  // A text token may hold a NUL; the caller gets the length of the string it can see.
  return static_cast<int>(std::strlen(buffer));
}

LWID BlockReader::readIdent(const LWBlockIdent* list) {
  if (!list) {
    noteHere("readID given no block list");
    return 0;
  }
  if (!text()) {
    if (limit() - pos_ < 4) {
      shortRead("readID", 1, 0, pos_);
      return 0;
    }
    const LWBlockIdent* found = ById(list, static_cast<LWID>(BigEndian(data_.data() + pos_, 4)));
    pos_ += 4;
    return found ? found->id : 0;
  }
  const std::size_t end = valueEnd();
  std::size_t tokenEnd = 0;
  if (!nextToken(end, &tokenEnd)) {
    nothingLeft("readID");
    afterValues();
    return 0;
  }
  const LWBlockIdent* found = ByToken(list, data_.data() + col_, tokenEnd - col_);
  col_ = tokenEnd;
  afterValues();
  return found ? found->id : 0;
}

int BlockReader::read(char* buffer, int length) {
  if (!buffer || length < 0) {
    noteHere(!buffer ? "read given no buffer" : "read given a negative length");
    return 0;
  }
  if (!text()) {
    const std::size_t available = limit() - pos_;
    if (available == 0) return -1;
    const std::size_t n = std::min(available, static_cast<std::size_t>(length));
    std::memcpy(buffer, data_.data() + pos_, n);
    pos_ += n;
    return static_cast<int>(n);
  }
  // Raw text reads hand out the current line piece by piece and move on once it is used up.
  const bool leaf = inLeaf();
  if (!leaf && (atEnd() || (!open_.empty() && !partlyRead() && lead(line_) == '}'))) return -1;
  const std::size_t end = lines_[line_].end;
  if (leaf && col_ >= end) return -1;
  const std::size_t n = std::min(end - col_, static_cast<std::size_t>(length));
  std::memcpy(buffer, data_.data() + col_, n);
  col_ += n;
  if (!leaf && col_ >= end) moveToLine(line_ + 1);
  return static_cast<int>(n);
}

// ---- The load state's C entry points --------------------------------------------------------

// A plug-in module is never unwound through: anything thrown (only allocation can) becomes the
// call's failure value.
struct BlockReaderAccess {
  template <class R, class F>
  static R Guard(void* data, R failure, F&& f) noexcept {
    if (!data) return failure;
    BlockReader& r = *static_cast<BlockReader*>(data);
    try {
      return f(r);
    } catch (...) {
      try {
        r.noteHere("out of memory while reading");
      } catch (...) {
      }
      return failure;
    }
  }

  static int Read(void* d, char* buf, int len) {
    return Guard(d, -1, [&](BlockReader& r) { return r.read(buf, len); });
  }
  static int ReadI1(void* d, char* v, int n) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readValues(v, n, "readI1"); });
  }
  static int ReadI2(void* d, short* v, int n) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readValues(v, n, "readI2"); });
  }
  static int ReadI4(void* d, int* v, int n) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readValues(v, n, "readI4"); });
  }
  static int ReadU1(void* d, unsigned char* v, int n) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readValues(v, n, "readU1"); });
  }
  static int ReadU2(void* d, unsigned short* v, int n) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readValues(v, n, "readU2"); });
  }
  static int ReadU4(void* d, unsigned int* v, int n) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readValues(v, n, "readU4"); });
  }
  static int ReadFP(void* d, float* v, int n) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readValues(v, n, "readFP"); });
  }
  static int ReadDP(void* d, double* v, int n) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readValues(v, n, "readDP"); });
  }
  static int ReadStr(void* d, char* buf, int max) {
    return Guard(d, 0, [&](BlockReader& r) { return r.readString(buf, max); });
  }
  static LWID ReadID(void* d, const LWBlockIdent* list) {
    return Guard(d, LWID(0), [&](BlockReader& r) { return r.readIdent(list); });
  }
  static LWID FindBlk(void* d, const LWBlockIdent* list) {
    return Guard(d, LWID(0), [&](BlockReader& r) { return r.find(list); });
  }
  static void EndBlk(void* d) {
    Guard(d, 0, [&](BlockReader& r) {
      r.end();
      return 0;
    });
  }
  static int Depth(void* d) { return d ? static_cast<BlockReader*>(d)->depth() : 0; }
};

BlockReader::BlockReader(IOMode mode, std::string data, std::string source)
    : mode_(mode),
      storage_(new char[data.size()]),
      data_(storage_.get(), data.size()),
      source_(std::move(source)) {
  // An exactly sized copy, so that a sanitizer catches any read past the end.
  std::memcpy(storage_.get(), data.data(), data.size());
  state_.ioMode = static_cast<int>(mode);
  state_.readData = this;
  state_.read = BlockReaderAccess::Read;
  state_.readI1 = BlockReaderAccess::ReadI1;
  state_.readI2 = BlockReaderAccess::ReadI2;
  state_.readI4 = BlockReaderAccess::ReadI4;
  state_.readU1 = BlockReaderAccess::ReadU1;
  state_.readU2 = BlockReaderAccess::ReadU2;
  state_.readU4 = BlockReaderAccess::ReadU4;
  state_.readFP = BlockReaderAccess::ReadFP;
  state_.readStr = BlockReaderAccess::ReadStr;
  state_.readID = BlockReaderAccess::ReadID;
  state_.findBlk = BlockReaderAccess::FindBlk;
  state_.endBlk = BlockReaderAccess::EndBlk;
  state_.depth = BlockReaderAccess::Depth;
  state_.readDP = BlockReaderAccess::ReadDP;
  if (text()) split();
}

}  // namespace lwhost
