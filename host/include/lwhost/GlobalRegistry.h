#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace lwhost {

// How often a name was looked up, per use code.
struct LookupCounts {
  int transient = 0;  // use code 0
  int acquire = 0;    // use code 1
  int release = 0;    // use code 2
};

// The host's named global services. Every look-up is counted per name, whether or not the name
// is answered, so tests can check a module's acquire/release discipline.
class GlobalRegistry {
 public:
  void provide(const std::string& name, void* service);
  // A withheld service answers null, as on a host that lacks it.
  void withhold(const std::string& name, bool withheld = true);
  bool provides(const std::string& name) const;

  // The lookup function's body; may be called from any thread.
  void* lookup(const char* name, int use);
  // What a look-up would answer, without counting it: for the host's own components, so that
  // the counts show only what modules asked.
  void* peek(const std::string& name) const;

  LookupCounts counts(const std::string& name) const;
  // Every name asked for, in order of first request.
  std::vector<std::string> namesAsked() const;
  void resetCounts();

 private:
  mutable std::mutex mutex_;
  std::map<std::string, void*> services_;
  std::set<std::string> withheld_;
  std::map<std::string, LookupCounts> counts_;
  std::vector<std::string> asked_;
};

}  // namespace lwhost
