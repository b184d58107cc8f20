#include "ServerChecks.h"

#include <lwpanel.h>
#include <lwxpanel.h>

#include <climits>
#include <limits>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "lwhost/NodalAccess.h"

namespace lwhost::validate {

namespace {

std::string Quoted(const std::string& s) { return "\"" + s + "\""; }

// A fresh instance, or the plug-in's reason for refusing it.
HandlerInstance* TryCreate(ServerProbe& probe, std::string* refusal) {
  try {
    return &probe.create();
  } catch (const CreationError& e) {
    *refusal = e.what();
    return nullptr;
  }
}

const char* ModeName(IOMode mode) { return mode == IOMode::Ascii ? "text" : "binary"; }

// Puts the instance into some state other than its default, through its own panel.
void Randomise(ServerProbe& probe, HandlerInstance& instance, unsigned long seed, bool randomise) {
  if (randomise) probe.exercisePanel(instance, seed);
}

// Everything a user of the instance does: render, show, store; what failed, or empty. A host
// without panel services (ScreamerNet, or one that withholds them) shows no panels.
std::string UseInstance(ServerProbe& probe, HandlerInstance& instance, unsigned long seed) {
  probe.render();
  Host& host = probe.session().host();
  if (host.application() != Application::ScreamerNet && host.globals().peek(LWXPANELFUNCS_GLOBAL) &&
      host.globals().peek(LWPANELFUNCS_GLOBAL))
    probe.exercisePanel(instance, seed);
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    std::string error;
    const std::string saved = instance.save(mode, &error);
    if (!error.empty()) return std::string("saving in ") + ModeName(mode) + " failed: " + error;
    instance.load(mode, saved);
  }
  probe.render();
  return "";
}

}  // namespace

Outcome ListRecords(const std::string& module) {
  Session session;
  ModuleFile* loaded = nullptr;
  try {
    loaded = &session.load(module);
  } catch (const ModuleError& e) {
    return Fail(e.what());
  }
  ModuleFile& file = *loaded;
  std::string text;
  std::set<std::pair<std::string, std::string>> seen;
  int index = 0;
  for (const ServerRecord* r : file.records()) {
    const std::string where = "record " + std::to_string(index++);
    if (!r->name || !*r->name) {
      text += "!" + where + " has no server name\n";
      continue;
    }
    const std::string id = std::string(r->className) + " " + Quoted(r->name);
    if (!r->activate) text += "!" + where + " (" + id + ") has no activation function\n";
    if (!seen.insert({r->className, r->name}).second) text += "!" + id + " is registered twice\n";
    for (const char* c = r->name; *c; ++c)
      if (static_cast<unsigned char>(*c) <= ' ') {
        text += "!" + id + " has a blank or control character in its server name\n";
        break;
      }
    if (r->activate) text += std::string(r->className) + "\t" + r->name + "\n";
  }
  if (file.records().empty()) text += "!the module registers no servers\n";
  return Pass(text);
}

Outcome CheckActivation(const Target& target) {
  ServerProbe probe(target);
  const ServerRecord& record = probe.module().require(target.className, target.name);
  // Room for any class's table: a plug-in that ignores the version writes here, not past it.
  struct Tables {
    LWInstanceFuncs inst;
    LWItemFuncs item;
    LWRenderFuncs rend;
    union {
      LWNodeHandler node;
      LWMasterHandler master;
      unsigned char any[4096];
    } local;
  };
  auto answer = [&](int version) {
    Tables t{};
    if (target.className == LWNODE_HCLASS) t.local.node.inst = &t.inst, t.local.node.item = &t.item, t.local.node.rend = &t.rend;
    if (target.className == LWMASTER_HCLASS) t.local.master.inst = &t.inst, t.local.master.item = &t.item;
    return probe.module().activate(record, version, &t.local);
  };
  std::vector<int> offered;
  if (target.className == LWNODE_HCLASS) offered = {LWNODECLASS_VERSION, 1};
  if (target.className == LWMASTER_HCLASS) offered = {LWMASTER_VERSION};
  bool accepted = offered.empty();
  for (int version : offered) {
    const int result = answer(version);
    if (result == AFUNC_OK) accepted = true;
    else if (result != AFUNC_BADVERSION)
      return Fail("version " + std::to_string(version) + " answered " + std::to_string(result));
  }
  if (!accepted) return Fail("refused every version the host offers");
  // Interface versions only grow, so a plug-in may take a newer one; handler versions do not.
  for (int version : {0, 99}) {
    if (version > 0 && !IsDrivenClass(target.className)) continue;
    const int result = answer(version);
    if (result != AFUNC_BADVERSION)
      return Fail("version " + std::to_string(version) + ", which no host offers, answered " +
                  std::to_string(result) + " instead of AFUNC_BADVERSION");
  }
  return Pass();
}

Outcome CheckCreate(const Target& target) {
  ServerProbe probe(target);
  std::string refusal;
  HandlerInstance* instance = TryCreate(probe, &refusal);
  if (!instance) return Fail("refused to be created: " + refusal);
  instance->description();
  HandlerInstance* second = TryCreate(probe, &refusal);
  if (!second) return Fail("refused a second instance: " + refusal);
  return Pass();
}

namespace {
// HandlerInstance's answer for a plug-in without a copy function.
const std::string kNoCopy = "the plug-in cannot copy instances";
}  // namespace

Outcome CheckCopy(const Target& target, unsigned long seed, bool randomise) {
  ServerProbe probe(target);
  std::string refusal;
  HandlerInstance* from = TryCreate(probe, &refusal);
  HandlerInstance* to = from ? TryCreate(probe, &refusal) : nullptr;
  if (!to) return Fail("refused to be created: " + refusal);
  Randomise(probe, *from, seed, randomise);
  const std::string error = to->copyFrom(*from);
  // No copy function is allowed; the host then cannot clone the plug-in's state.
  if (error.size() >= kNoCopy.size() && error.compare(error.size() - kNoCopy.size(), kNoCopy.size(), kNoCopy) == 0)
    return Skip("the plug-in has no copy function");
  if (!error.empty()) return Fail("copy failed: " + error);
  if (to->save(IOMode::Ascii) != from->save(IOMode::Ascii)) return Fail("the copy saves other data than the original");
  return Pass();
}

Outcome CheckRoundTrip(const Target& target, IOMode mode, unsigned long seed, bool randomise) {
  ServerProbe probe(target);
  std::string refusal;
  HandlerInstance* first = TryCreate(probe, &refusal);
  HandlerInstance* second = first ? TryCreate(probe, &refusal) : nullptr;
  if (!second) return Fail("refused to be created: " + refusal);
  Randomise(probe, *first, seed, randomise);
  std::string error;
  const std::string saved = first->save(mode, &error);
  if (!error.empty()) return Fail("save failed: " + error);
  if (saved.empty()) return Pass("saves nothing");
  error = second->load(mode, saved);
  if (!error.empty()) return Fail("loading its own data failed: " + error);
  const std::string again = second->save(mode);
  if (again != saved) {
    std::size_t at = 0;
    while (at < saved.size() && at < again.size() && saved[at] == again[at]) ++at;
    return Fail("saved " + std::to_string(saved.size()) + " bytes, loaded them, and saved " +
                std::to_string(again.size()) + " bytes that differ from byte " + std::to_string(at));
  }
  return Pass();
}

namespace {

std::string Damage(const std::string& data, IOMode mode, std::mt19937& random) {
  auto below = [&](std::size_t n) { return n ? std::uniform_int_distribution<std::size_t>(0, n - 1)(random) : 0; };
  std::string out = data;
  switch (below(5)) {
    case 0:  // cut short
      out.resize(below(out.size() + 1));
      break;
    case 1:  // bytes changed
      for (std::size_t i = 0, n = 1 + below(8); i < n && !out.empty(); ++i)
        out[below(out.size())] = static_cast<char>(below(256));
      break;
    case 2: {  // a piece repeated elsewhere
      const std::size_t from = below(out.size() + 1), length = below(out.size() - from + 1);
      out.insert(below(out.size() + 1), out.substr(from, length));
      break;
    }
    case 3: {  // noise in place of the data
      out.assign(below(256), '\0');
      for (char& c : out) c = static_cast<char>(mode == IOMode::Ascii ? " {}\"0123456789.-eE\nabcXYZ"[below(25)] : below(256));
      break;
    }
    default:  // a number made huge or meaningless
      for (std::size_t i = 0; i < out.size(); ++i)
        if ((out[i] >= '0' && out[i] <= '9') || mode == IOMode::Binary) {
          const std::size_t at = below(out.size() - i) + i;
          out.replace(at, 1, mode == IOMode::Ascii ? (below(2) ? "1e999" : "nan") : std::string(4, '\xff'));
          break;
        }
  }
  return out;
}

}  // namespace

Outcome CheckDamagedLoad(const Target& target, unsigned long seed, int rounds) {
  ServerProbe probe(target);
  std::string refusal;
  HandlerInstance* source = TryCreate(probe, &refusal);
  HandlerInstance* victim = source ? TryCreate(probe, &refusal) : nullptr;
  HandlerInstance* witness = victim ? TryCreate(probe, &refusal) : nullptr;
  if (!witness) return Fail("refused to be created: " + refusal);
  probe.exercisePanel(*source, seed);
  const std::string text = source->save(IOMode::Ascii), binary = source->save(IOMode::Binary);
  if (text.empty() && binary.empty()) return Pass("saves nothing");
  std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
  for (int i = 0; i < rounds; ++i) {
    const IOMode mode = i % 2 ? IOMode::Binary : IOMode::Ascii;
    victim->load(mode, Damage(mode == IOMode::Ascii ? text : binary, mode, random));
  }
  const std::string use = UseInstance(probe, *victim, seed);
  if (!use.empty()) return Fail("after damaged data, " + use);
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    const std::string own = mode == IOMode::Ascii ? text : binary;
    const std::string error = victim->load(mode, own);
    if (!error.empty()) return Fail(std::string("after damaged data, loading good ") + ModeName(mode) + " data failed: " + error);
    // Judged against an untouched instance, so that a save that does not round-trip is not blamed here.
    witness->load(mode, own);
    if (victim->save(mode) != witness->save(mode))
      return Fail(std::string("after damaged data, good ") + ModeName(mode) + " data no longer loads to the same state");
  }
  return Pass();
}

Outcome LearnServices(const Target& target, unsigned long seed) {
  ServerProbe probe(target);
  std::string refusal;
  HandlerInstance* instance = TryCreate(probe, &refusal);
  if (instance) UseInstance(probe, *instance, seed);
  std::string names;
  for (const std::string& name : probe.session().host().globals().namesAsked()) names += name + "\n";
  return Pass(names);
}

namespace {

Outcome UseUnder(const Target& target, const std::function<void(Host&)>& prepare, unsigned long seed) {
  ServerProbe probe(target, prepare);
  std::string refusal;
  HandlerInstance* instance = TryCreate(probe, &refusal);
  if (!instance) return Pass("refused to be created: " + refusal);
  const std::string use = UseInstance(probe, *instance, seed);
  return use.empty() ? Pass() : Fail(use);
}

}  // namespace

Outcome CheckWithheld(const Target& target, const std::string& service, unsigned long seed) {
  return UseUnder(target, [&](Host& host) { host.globals().withhold(service); }, seed);
}

Outcome CheckProgram(const Target& target, Application program, unsigned long seed) {
  return UseUnder(target,
                  [&](Host& host) {
                    host.actAs(program);
                    if (program == Application::ScreamerNet) {
                      host.globals().withhold(LWXPANELFUNCS_GLOBAL);
                      host.globals().withhold(LWPANELFUNCS_GLOBAL);
                    }
                  },
                  seed);
}

Outcome CheckPanel(const Target& target, unsigned long seed) {
  if (!target.hasInterface) return Skip("no interface server");
  ServerProbe probe(target);
  std::string refusal;
  HandlerInstance* instance = TryCreate(probe, &refusal);
  if (!instance) return Fail("refused to be created: " + refusal);
  for (int i = 0; i < 3; ++i) {
    const std::string problem = probe.exercisePanel(*instance, seed + i);
    if (!problem.empty()) return Fail(problem);
  }
  // The host notes every call it had to refuse: stale handles, unknown ids, bad arguments.
  const std::vector<std::string>& misuse = probe.session().xpanels().problems();
  if (!misuse.empty())
    return Fail("the panel service refused " + std::to_string(misuse.size()) + " call(s), first: " + misuse.front());
  return Pass();
}

Outcome CheckExtremeInputs(const Target& target) {
  ServerProbe probe(target);
  std::string refusal;
  HandlerInstance* instance = TryCreate(probe, &refusal);
  if (!instance) return Fail("refused to be created: " + refusal);
  PluginNode& node = *probe.nodeOf(*instance);
  if (node.inputs().empty()) return Pass("no inputs");
  NodeEditor& editor = probe.session().nodes();
  const double inf = std::numeric_limits<double>::infinity();
  for (double v : {std::numeric_limits<double>::quiet_NaN(), inf, -inf, 1e300, -1e300, -0.0}) {
    const int integer = v != v ? 0 : v > 0 ? INT_MAX : INT_MIN;
    LWNodalMaterial material{{v, v, v}, {v, v, v}, {v, v, v}, {v, v, v}, v};
    for (const auto& input : node.inputs()) {
      Node* source = nullptr;
      switch (input->type()) {
        case NOT_COLOR: source = &editor.addColor(v, v, v); break;
        case NOT_VECTOR: source = &editor.addVector(v, v, v); break;
        case NOT_SCALAR: source = &editor.addScalar(v); break;
        case NOT_INTEGER: source = &editor.addInteger(integer); break;
        case NOT_MATERIAL: source = &editor.addMaterial(material); break;
        default: continue;
      }
      editor.connect(*source->outputs().front(), *input);
    }
    probe.render(8);
  }
  return Pass();
}

Outcome CheckConcurrentEvaluation(const Target& target, int samplesPerThread) {
  ServerProbe probe(target);
  std::string refusal;
  HandlerInstance* instance = TryCreate(probe, &refusal);
  if (!instance) return Fail("refused to be created: " + refusal);
  PluginNode& node = *probe.nodeOf(*instance);
  NodeEditor& editor = probe.session().nodes();
  const int threads = static_cast<int>(std::max(2u, std::min(16u, std::thread::hardware_concurrency())));
  node.init(LWINIT_RENDER);
  node.newTime(0, 0.0);
  std::vector<std::thread> workers;
  for (int t = 0; t < threads; ++t)
    workers.emplace_back([&, t] {
      for (int i = 0; i < samplesPerThread; ++i) {
        const double position[3] = {0.01 * i, -0.02 * t, 1.0};
        LWNodalAccess access = MakeNodalAccess(position, position);
        access.ResourceContextIndex = t;
        for (const auto& output : node.outputs()) EvaluateOutput(editor, *output, access);
      }
    });
  for (std::thread& w : workers) w.join();
  node.cleanup();
  return Pass(std::to_string(threads) + " threads");
}

}  // namespace lwhost::validate
