#include "lwhost/HintList.h"

#include <cstdio>
#include <limits>

namespace lwhost {

namespace {

struct TagName {
  std::uint32_t tag;
  const char* name;
};

#define LWHOST_TAG(t) \
  { static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(t)), #t }
// clang-format off
const TagName kTagNames[] = {
    LWHOST_TAG(XPTAG_CALL),         LWHOST_TAG(XPTAG_NEST),          LWHOST_TAG(XPTAG_LABEL),
    LWHOST_TAG(XPTAG_CLASS),        LWHOST_TAG(XPTAG_ADD),           LWHOST_TAG(XPTAG_DELETE),
    LWHOST_TAG(XPTAG_CHGNOTIFY),    LWHOST_TAG(XPTAG_FOCUS),         LWHOST_TAG(XPTAG_DESTROYNOTIFY),
    LWHOST_TAG(XPTAG_AUTORESTORE),  LWHOST_TAG(XPTAG_VALUE),         LWHOST_TAG(XPTAG_LINK),
    LWHOST_TAG(XPTAG_IMMUPD),       LWHOST_TAG(XPTAG_TRACK),         LWHOST_TAG(XPTAG_ORIENT),
    LWHOST_TAG(XPTAG_MIN),          LWHOST_TAG(XPTAG_MAX),           LWHOST_TAG(XPTAG_STEP),
    LWHOST_TAG(XPTAG_RANGE),        LWHOST_TAG(XPTAG_SENS),          LWHOST_TAG(XPTAG_STRLIST),
    LWHOST_TAG(XPTAG_HARDMINMAX),   LWHOST_TAG(XPTAG_CLRMINMAX),     LWHOST_TAG(XPTAG_BUTNOTIFY),
    LWHOST_TAG(XPTAG_POPCMDFUNC),   LWHOST_TAG(XPTAG_POPFUNCS),      LWHOST_TAG(XPTAG_INTXFORM),
    LWHOST_TAG(XPTAG_DRAWCBFUNC),   LWHOST_TAG(XPTAG_ZOOMCBFUNC),    LWHOST_TAG(XPTAG_TEXTXFORMFUNC),
    LWHOST_TAG(XPTAG_VECLABEL),     LWHOST_TAG(XPTAG_CTRLFRONT),     LWHOST_TAG(XPTAG_CTRLCFG),
    LWHOST_TAG(XPTAG_XREQCFG),      LWHOST_TAG(XPTAG_ALIAS),         LWHOST_TAG(XPTAG_UNALIAS),
    LWHOST_TAG(XPTAG_ENABLE),       LWHOST_TAG(XPTAG_GROUP),         LWHOST_TAG(XPTAG_ORDER),
    LWHOST_TAG(XPTAG_STACK),        LWHOST_TAG(XPTAG_TABS),          LWHOST_TAG(XPTAG_LEFT),
    LWHOST_TAG(XPTAG_NARROW),       LWHOST_TAG(XPTAG_DIVADD),        LWHOST_TAG(XPTAG_DIVREM),
    LWHOST_TAG(XPTAG_BORDER),       LWHOST_TAG(XPTAG_DLOGTYPE),
};
// clang-format on
#undef LWHOST_TAG

std::string Hex(std::uint64_t v) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "0x%llX", static_cast<unsigned long long>(v));
  return buf;
}

class Parser {
 public:
  explicit Parser(HintParse& out) : out_(out) {}

  // Returns false when parsing must stop altogether.
  bool parseList(const LWXPanelHint* words, std::size_t bound, std::uint32_t scope, int depth) {
    if (depth > kMaxHintDepth) {
      problem("hint lists nested deeper than " + std::to_string(kMaxHintDepth) + " levels; the inner list is skipped");
      return true;
    }
    for (const LWXPanelHint* open : open_) {
      if (open == words) {
        problem("XPTAG_CALL of a hint list that is already being read (a cycle); the call is skipped");
        return true;
      }
    }
    open_.push_back(words);
    bool ok = readList(words, bound, scope, depth);
    open_.pop_back();
    return ok;
  }

 private:
  bool readList(const LWXPanelHint* words, std::size_t bound, std::uint32_t scope, int depth) {
    std::size_t at = 0;
    auto take = [&](LWXPanelHint& word) {
      if (at >= bound) return false;
      if (++total_ > kMaxHintWords) return false;
      word = words[at++];
      return true;
    };
    auto stopped = [&](const std::string& why) {
      if (total_ > kMaxHintWords)
        problem("hint list longer than " + std::to_string(kMaxHintWords) + " words; the rest is ignored");
      else
        problem(why);
      return false;
    };

    for (;;) {
      LWXPanelHint word;
      if (!take(word)) return stopped("hint list ends without XPTAG_END after " + std::to_string(at) + " words");
      const auto raw = reinterpret_cast<std::uintptr_t>(word);
      const std::uint32_t tag = HintWord(word);
      if (tag == 0 && raw == 0) return true;  // XPTAG_END
      if (static_cast<std::uint64_t>(raw) >> 32) {
        return stopped("word " + std::to_string(at - 1) + " (" + Hex(raw) +
                       ") cannot be a hint tag; the list probably ended inside an earlier hint's arguments");
      }

      Hint hint;
      hint.tag = tag;
      hint.scope = scope;
      const int fixed = HintFixedArgs(tag);
      for (int i = 0; i < fixed; ++i) {
        LWXPanelHint arg;
        if (!take(arg)) {
          return stopped("hint list ends inside the arguments of " + HintTagName(tag) + ": " + std::to_string(i) +
                         " of " + std::to_string(fixed) + " words present");
        }
        hint.args.push_back(arg);
      }
      if (HintHasList(tag)) {
        for (;;) {
          LWXPanelHint item;
          if (!take(item)) return stopped("hint list ends inside the id list of " + HintTagName(tag));
          if (!item) break;
          hint.list.push_back(item);
        }
      }

      if (tag == hint_tag::kCall) {
        auto nested = static_cast<const LWXPanelHint*>(hint.args[1]);
        if (!nested) continue;
        const std::uint32_t id = hint.id(0);
        if (!parseList(nested, std::numeric_limits<std::size_t>::max(), id ? id : scope, depth + 1)) return false;
        continue;
      }
      out_.hints.push_back(std::move(hint));
    }
  }

  void problem(const std::string& text) { out_.problems.push_back(text); }

  HintParse& out_;
  std::vector<const LWXPanelHint*> open_;
  std::size_t total_ = 0;
};

}  // namespace

std::uint32_t Hint::id(std::size_t i) const { return i < args.size() ? HintWord(args[i]) : 0; }

std::uint32_t Hint::target(std::size_t i) const {
  std::uint32_t v = id(i);
  return v ? v : scope;
}

std::uint32_t HintWord(LWXPanelHint word) { return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(word)); }

int HintFixedArgs(std::uint32_t tag) { return static_cast<int>(tag & 0x7F); }

bool HintHasList(std::uint32_t tag) { return (tag & 0x80) != 0; }

std::string HintTagName(std::uint32_t tag) {
  for (const TagName& t : kTagNames)
    if (t.tag == tag) return t.name;
  return "tag " + Hex(tag);
}

HintParse ParseHints(const LWXPanelHint* words, std::uint32_t scope) {
  return ParseBoundedHints(words, std::numeric_limits<std::size_t>::max(), scope);
}

HintParse ParseBoundedHints(const LWXPanelHint* words, std::size_t count, std::uint32_t scope) {
  HintParse out;
  if (!words) return out;
  Parser(out).parseList(words, count, scope, 0);
  return out;
}

}  // namespace lwhost
