#include "io/ScriptWords.h"

#include <cctype>

namespace lwhost {

std::optional<std::vector<std::string>> SplitScriptWords(const std::string& line, bool escapes) {
  std::vector<std::string> words;
  std::string word;
  bool inWord = false, quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quoted) {
      if (escapes && c == '\\' && i + 1 < line.size() && (line[i + 1] == '"' || line[i + 1] == '\\'))
        word.push_back(line[++i]);
      else if (c == '"')
        quoted = false;
      else
        word.push_back(c);
    } else if (c == '#') {
      break;
    } else if (c == '"') {
      quoted = inWord = true;
    } else if (std::isspace(static_cast<unsigned char>(c))) {
      if (inWord) words.push_back(word);
      word.clear();
      inWord = false;
    } else {
      word.push_back(c);
      inWord = true;
    }
  }
  if (quoted) return std::nullopt;
  if (inWord) words.push_back(word);
  return words;
}

}  // namespace lwhost
