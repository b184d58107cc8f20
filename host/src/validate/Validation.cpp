#include "lwhost/Validation.h"

#include <lwnodes.h>
#include <lwvparm.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "IsolatedRun.h"
#include "ServerChecks.h"

namespace lwhost {

namespace validate {
namespace {

struct Check {
  std::string title;
  std::function<Outcome()> body;
};

// The services a host cannot lack and still run servers of a class: the node editor's own
// tables, and the animatable parameters every node panel and scene file rests on.
bool AlwaysOffered(const std::string& className, const std::string& service) {
  static const char* const kNodeServices[] = {LWNODEFUNCS_GLOBAL, "NodeInputFuncs", LWNODEINPUTFUNCS_GLOBAL,
                                              LWNODEOUTPUTFUNCS_GLOBAL, LWNODEUTILITYFUNCS_GLOBAL, LWVPARMFUNCS_GLOBAL};
  if (className != LWNODE_HCLASS) return false;
  for (const char* name : kNodeServices)
    if (service == name) return true;
  return false;
}

// Plans the checks of one record at a level. The global services withheld are those the
// server asked for when used normally, learned in a run of their own.
std::vector<Check> ChecksFor(const Target& t, const ValidationOptions& o) {
  const unsigned long seed = o.seed;
  const int level = o.level;
  std::vector<Check> checks{{"activation", [=] { return CheckActivation(t); }}};
  if (!IsDrivenClass(t.className)) return checks;
  checks.push_back({"create and destroy", [=] { return CheckCreate(t); }});
  if (level >= 2) {
    const bool randomise = level >= 4;
    checks.push_back({"copy", [=] { return CheckCopy(t, seed, randomise); }});
    checks.push_back({"save/load round trip (text)", [=] { return CheckRoundTrip(t, IOMode::Ascii, seed, randomise); }});
    checks.push_back({"save/load round trip (binary)", [=] { return CheckRoundTrip(t, IOMode::Binary, seed, randomise); }});
  }
  if (level >= 3) {
    checks.push_back({"load damaged data", [=] { return CheckDamagedLoad(t, seed, 40 * level); }});
    const Outcome learned = RunIsolated([=] { return LearnServices(t, seed); }, o.timeoutSeconds);
    if (learned.verdict != Verdict::Pass)
      checks.push_back({"global services withheld in turn", [=] { return learned; }});
    std::istringstream names(learned.verdict == Verdict::Pass ? learned.text : "");
    for (std::string name; std::getline(names, name);) {
      if (name.empty()) continue;
      const std::string title = "without \"" + name + "\"";
      if (AlwaysOffered(t.className, name))
        checks.push_back({title, [=] { return Skip("LightWave offers it wherever it runs " + t.className + " servers"); }});
      else
        checks.push_back({title, [=] { return CheckWithheld(t, name, seed); }});
    }
  }
  if (level >= 4) {
    checks.push_back({"as Modeler", [=] { return CheckProgram(t, Application::Modeler, seed); }});
    checks.push_back({"as ScreamerNet", [=] { return CheckProgram(t, Application::ScreamerNet, seed); }});
    checks.push_back({"panel", [=] { return CheckPanel(t, seed); }});
  }
  if (level >= 5 && t.className == LWNODE_HCLASS) {
    checks.push_back({"NaN, infinite and huge inputs", [=] { return CheckExtremeInputs(t); }});
    checks.push_back({"evaluation on all threads", [=] { return CheckConcurrentEvaluation(t, 2000); }});
  }
  return checks;
}

struct Tally {
  int passed = 0, failed = 0, skipped = 0;
};

void Report(std::FILE* out, Tally& tally, const std::string& subject, const std::string& title, const Outcome& o,
            bool detail) {
  const char* word = o.verdict == Verdict::Pass ? "PASS" : o.verdict == Verdict::Fail ? "FAIL" : "SKIP";
  (o.verdict == Verdict::Pass ? tally.passed : o.verdict == Verdict::Fail ? tally.failed : tally.skipped)++;
  std::string why = detail || o.verdict != Verdict::Pass ? o.text : "";
  for (char& c : why)
    if (static_cast<unsigned char>(c) < 32) c = ' ';
  std::fprintf(out, "%s  %s: %s%s%s\n", word, subject.c_str(), title.c_str(), why.empty() ? "" : ": ", why.c_str());
  std::fflush(out);
}

}  // namespace
}  // namespace validate

int Validate(const std::string& modulePath, const ValidationOptions& options, std::FILE* out) {
  using namespace validate;
  Tally tally;
  const Outcome listing = RunIsolated([&] { return ListRecords(modulePath); }, options.timeoutSeconds);
  if (listing.verdict != Verdict::Pass) {
    Report(out, tally, modulePath, "load", listing, true);
  } else {
    std::vector<Target> targets;
    std::string faults;
    std::istringstream lines(listing.text);
    for (std::string line; std::getline(lines, line);) {
      if (line.empty()) continue;
      if (line[0] == '!') {
        faults += (faults.empty() ? "" : "; ") + line.substr(1);
        continue;
      }
      const std::size_t tab = line.find('\t');
      targets.push_back({modulePath, line.substr(0, tab), line.substr(tab + 1)});
    }
    Report(out, tally, modulePath, "server records", faults.empty() ? Pass() : Fail(faults), false);
    for (Target& t : targets)
      for (const Target& other : targets)
        if (other.name == t.name && other.className == (t.className == LWNODE_HCLASS ? LWNODE_ICLASS : LWMASTER_ICLASS))
          t.hasInterface = true;
    bool any = false;
    for (const Target& t : targets) {
      if (!options.server.empty() && t.name != options.server) continue;
      any = true;
      const std::string subject = t.className + " " + t.name;
      bool created = true;
      for (const Check& check : ChecksFor(t, options)) {
        // Without an instance the checks that need one say nothing new.
        if (!created && check.title != "activation") {
          Report(out, tally, subject, check.title, Skip("no instance (create failed)"), false);
          continue;
        }
        const Outcome outcome = RunIsolated(check.body, options.timeoutSeconds);
        if (check.title == "create and destroy" && outcome.verdict == Verdict::Fail) created = false;
        Report(out, tally, subject, check.title, outcome, false);
      }
      if (!IsDrivenClass(t.className) && t.className != LWNODE_ICLASS && t.className != LWMASTER_ICLASS)
        Report(out, tally, subject, "instances", Skip("lwhost does not drive " + t.className + " servers"), false);
    }
    if (!any && !options.server.empty())
      Report(out, tally, modulePath, "server " + options.server, Fail("the module has no server of that name"), false);
  }
  std::fprintf(out, "%d passed, %d failed", tally.passed, tally.failed);
  if (tally.skipped) std::fprintf(out, " (%d skipped)", tally.skipped);
  std::fprintf(out, "\n");
  return tally.failed;
}

}  // namespace lwhost
