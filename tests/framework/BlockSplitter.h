#pragma once

#include <string>
#include <vector>

// Splits saved plug-in data into its top-level blocks, so tests can reorder them or insert
// blocks of their own. Text: a leaf is one line, a nested block runs from "{ Token" to the
// "}" at the same depth. Binary: a 4-byte ID, a 2-byte big-endian size and the content.
inline std::vector<std::string> SplitTextBlocks(const std::string& text) {
  std::vector<std::string> blocks;
  size_t at = 0;
  int depth = 0;
  std::string current;
  while (at < text.size()) {
    size_t end = text.find('\n', at);
    std::string line = text.substr(at, end == std::string::npos ? std::string::npos : end - at + 1);
    at = end == std::string::npos ? text.size() : end + 1;
    current += line;
    const size_t first = line.find_first_not_of(' ');
    if (first != std::string::npos && line[first] == '{') ++depth;
    if (first != std::string::npos && line[first] == '}') --depth;
    if (depth == 0) {
      blocks.push_back(current);
      current.clear();
    }
  }
  return blocks;
}

inline std::vector<std::string> SplitBinaryBlocks(const std::string& data) {
  std::vector<std::string> blocks;
  size_t at = 0;
  while (at + 6 <= data.size()) {
    size_t size = (static_cast<unsigned char>(data[at + 4]) << 8) | static_cast<unsigned char>(data[at + 5]);
    blocks.push_back(data.substr(at, 6 + size));
    at += 6 + size;
  }
  return blocks;
}

inline std::string Join(const std::vector<std::string>& blocks) {
  std::string out;
  for (const std::string& b : blocks) out += b;
  return out;
}
