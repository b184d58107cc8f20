#pragma once

#include <lwxpanel.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lwhost {

// One hint of an XPanel hint array, with its words as the plug-in gave them.
struct Hint {
  std::uint32_t tag = 0;
  // The id the enclosing list was applied to (0 = the panel); XpSUBCALL lists carry their own.
  std::uint32_t scope = 0;
  std::vector<LWXPanelHint> args;  // the fixed argument words
  std::vector<LWXPanelHint> list;  // the 0-ended word list, without its 0

  // An argument word as a 32-bit id or number (hint words are pointer-sized).
  std::uint32_t id(std::size_t i) const;
  // An argument id where 0 stands for the list's scope (hint(panel, cid, ...) on one control).
  std::uint32_t target(std::size_t i) const;
};

struct HintParse {
  std::vector<Hint> hints;  // in order, with XPTAG_CALL lists spliced in place
  std::vector<std::string> problems;
};

// Reads a hint array by the arity each tag states in its low byte: bits 0-6 count the fixed
// argument words, bit 7 adds a 0-ended list. Fixed arguments may be 0, so only those lists are
// searched for zeros. XPTAG_CALL lists are followed up to a depth limit, and a list calling
// itself again while still open is skipped.
//
// Parsing stops with a problem noted when the words run out inside a hint (the bounded form
// knows where the array ends; nested lists are never bounded), when a tag word cannot be a tag (its upper half is set,
// as when the parser has run past a list's end into pointers), or after kMaxWords words in all.
HintParse ParseHints(const LWXPanelHint* words, std::uint32_t scope = 0);
HintParse ParseBoundedHints(const LWXPanelHint* words, std::size_t count, std::uint32_t scope = 0);

constexpr std::size_t kMaxHintWords = 1u << 16;
constexpr int kMaxHintDepth = 16;

// The tags a headless panel acts on, as 32-bit values (the SDK's XPTAG_ macros are pointers,
// which cannot label a switch case).
namespace hint_tag {
constexpr std::uint32_t kCall = 0xDD002;
constexpr std::uint32_t kLabel = 0x3D000B03;
constexpr std::uint32_t kChangeNotify = 0x3D000F01;
constexpr std::uint32_t kDestroyNotify = 0x3D001302;
constexpr std::uint32_t kValue = 0x3D006502;
constexpr std::uint32_t kStringList = 0x3D014503;
constexpr std::uint32_t kButtonNotify = 0x3D015F02;
constexpr std::uint32_t kPopCommand = 0x3D016002;
constexpr std::uint32_t kPopFuncs = 0x3D016203;
constexpr std::uint32_t kDrawFunc = 0x3D016502;
constexpr std::uint32_t kZoomFunc = 0x3D016603;
constexpr std::uint32_t kControlConfig = 0x3D017403;
constexpr std::uint32_t kDividerAdd = 0x3D021481;
constexpr std::uint32_t kDividerRemove = 0x3D021581;
}  // namespace hint_tag

// Low 32 bits of a hint word.
std::uint32_t HintWord(LWXPanelHint word);
int HintFixedArgs(std::uint32_t tag);
bool HintHasList(std::uint32_t tag);
// "XPTAG_LABEL" and so on; "tag 0x3D7777..." for tags this host does not know.
std::string HintTagName(std::uint32_t tag);

}  // namespace lwhost
