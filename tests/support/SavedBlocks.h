#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "lwhost/IOMode.h"

// Saved plug-in data cut into its top-level blocks, so tests can reorder them, insert blocks of
// their own or rebuild a nested block around new content. Text: a leaf is one line, a nested
// block runs from "{ Token" to its "}". Binary: a 4-byte ID, a 16-bit big-endian size, the
// content.
inline std::vector<std::string> Split(const std::string& data, lwhost::IOMode mode) {
  std::vector<std::string> blocks;
  for (std::size_t at = 0, end = 0; at < data.size(); at = end) {
    if (mode == lwhost::IOMode::Binary) {
      end = at + 6 + (static_cast<unsigned char>(data[at + 4]) << 8 | static_cast<unsigned char>(data[at + 5]));
    } else {
      for (int depth = 0; end == at || depth > 0; end = data.find('\n', end) + 1) {
        const char first = data[data.find_first_not_of(' ', end)];
        depth += (first == '{') - (first == '}');
      }
    }
    blocks.push_back(data.substr(at, end - at));
  }
  return blocks;
}

inline std::string Join(const std::vector<std::string>& blocks) {
  std::string out;
  for (const std::string& b : blocks) out += b;
  return out;
}

// A nested block's content, and the block rebuilt around new content.
inline std::string Inner(const std::string& block, lwhost::IOMode mode) {
  if (mode == lwhost::IOMode::Binary) return block.substr(6);
  const std::size_t start = block.find('\n') + 1;
  return block.substr(start, block.rfind('}') - start);
}

inline std::string Rewrap(const std::string& block, const std::string& inner, lwhost::IOMode mode) {
  if (mode == lwhost::IOMode::Binary)
    return block.substr(0, 4) + static_cast<char>(inner.size() >> 8) + static_cast<char>(inner.size() & 0xFF) + inner;
  return block.substr(0, block.find('\n') + 1) + inner + "}\n";
}
