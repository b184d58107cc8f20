#include "platform/NotificationForwarding.h"

#include <fstream>
#include <sstream>

namespace platform {

namespace {

const char kFileName[] = "VornNotify.cfg";
const char kKey[] = "command:";

// Words at blanks; double quotes group, with \" and \\ inside them. False for an open quote.
bool SplitWords(const std::string& text, std::vector<std::string>* words) {
  std::string word;
  bool inWord = false, quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      if (c == '\\' && i + 1 < text.size() && (text[i + 1] == '"' || text[i + 1] == '\\'))
        word += text[++i];
      else if (c == '"')
        quoted = false;
      else
        word += c;
    } else if (c == '"') {
      quoted = inWord = true;
    } else if (c == ' ' || c == '\t' || c == '\r') {
      if (inWord) words->push_back(word);
      word.clear();
      inWord = false;
    } else {
      word += c;
      inWord = true;
    }
  }
  if (inWord) words->push_back(word);
  return !quoted;
}

}  // namespace

ForwardingConfig ParseForwardingConfig(const std::string& text) {
  ForwardingConfig config;
  std::istringstream in(text);
  std::string line;
  int commands = 0;
  for (int number = 1; std::getline(in, line); ++number) {
    const std::size_t start = line.find_first_not_of(" \t\r");
    if (start == std::string::npos || line[start] == '#') continue;
    const std::string where = std::string(kFileName) + " line " + std::to_string(number) + ": ";
    if (line.compare(start, sizeof kKey - 1, kKey) != 0) {
      config.problem = where + "expected \"command: PATH ARG...\"";
      break;
    }
    if (++commands > 1) {
      config.problem = where + "only one command line is allowed";
      break;
    }
    std::vector<std::string> words;
    if (!SplitWords(line.substr(start + sizeof kKey - 1), &words)) {
      config.problem = where + "a quote is not closed";
      break;
    }
    if (words.empty()) {
      config.problem = where + "no program after \"command:\"";
      break;
    }
    config.command = std::move(words);
  }
  if (!config.problem.empty()) config.command.clear();
  if (config.problem.empty() && config.command.empty()) config.problem = std::string(kFileName) + " names no command";
  if (!config.problem.empty()) config.problem += "; notifications are not forwarded";
  return config;
}

ForwardingConfig ReadForwardingConfig(const std::string& settingsDirectory) {
  std::string path = settingsDirectory;
  if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
  path += kFileName;
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    ForwardingConfig config;
    config.missing = true;
    config.problem = "no " + path + "; notifications are not forwarded to a program";
    return config;
  }
  std::ostringstream text;
  text << in.rdbuf();
  return ParseForwardingConfig(text.str());
}

}  // namespace platform
