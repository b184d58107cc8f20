#pragma once

#include <exception>
#include <string>
#include <vector>

namespace lwhost::panels {

// What went wrong, in the order it happened. Noting never throws.
class ProblemLog {
 public:
  void note(const std::string& text) noexcept {
    try {
      entries_.push_back(text);
    } catch (...) {
      // Out of memory: the note is lost, the host carries on.
    }
  }
  std::vector<std::string> entries() const { return entries_; }
  void clear() { entries_.clear(); }

 private:
  std::vector<std::string> entries_;
};

// Runs plug-in code; an exception from it is noted rather than passed on to the host's caller.
template <class F>
bool CallPlugin(ProblemLog& log, const char* what, const std::string& whose, F&& call) noexcept {
  try {
    call();
    return true;
  } catch (const std::exception& e) {
    try {
      log.note(std::string(what) + " of " + whose + " threw: " + e.what());
    } catch (...) {
    }
  } catch (...) {
    try {
      log.note(std::string(what) + " of " + whose + " threw a non-standard exception");
    } catch (...) {
    }
  }
  return false;
}

}  // namespace lwhost::panels
