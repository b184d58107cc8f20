#include "lwhost/NetworkFile.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <tuple>

#include "io/ScriptWords.h"
#include "lwhost/CreationError.h"
#include "lwhost/Envelope.h"
#include "lwhost/NodeError.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "lwhost/VParm.h"
#include "lwhost/XPanel.h"
#include "SceneLines.h"

namespace lwhost {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr const char* kNoValue = "shows no value (the plug-in hides values whose input is connected)";

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

std::string Trim(const std::string& s) {
  const char* blanks = " \t\r\n";
  const std::size_t first = s.find_first_not_of(blanks);
  if (first == std::string::npos) return "";
  return s.substr(first, s.find_last_not_of(blanks) - first + 1);
}

std::string Quoted(const std::string& s) { return "\"" + s + "\""; }

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

// ---- numbers and names ----

bool ParseDouble(const std::string& text, double* value) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text[0]))) return false;
  errno = 0;
  char* end = nullptr;
  const double v = std::strtod(text.c_str(), &end);
  if (end != text.c_str() + text.size() || errno == ERANGE || !std::isfinite(v)) return false;
  *value = v;
  return true;
}

bool ParseInt(const std::string& text, int* value) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text[0]))) return false;
  errno = 0;
  char* end = nullptr;
  const long v = std::strtol(text.c_str(), &end, 10);
  if (end != text.c_str() + text.size() || errno == ERANGE || v < INT_MIN || v > INT_MAX) return false;
  *value = static_cast<int>(v);
  return true;
}

bool IsName(const std::string& s) {
  if (s.empty() || !(std::isalpha(static_cast<unsigned char>(s[0])) || s[0] == '_')) return false;
  return std::all_of(s.begin(), s.end(),
                     [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-'; });
}

// ---- control values ----

// The class without its "-env" ending, lower case: "percent-env" -> "percent".
std::string BaseClass(const std::string& controlClass) {
  std::string c = Lower(controlClass);
  if (EndsWith(c, "-env")) c.resize(c.size() - 4);
  return c;
}

bool IsPopupClass(const std::string& base) {
  return base == "ipopchoice" || base == "ichoice" || base == "ipoptransform" || base == "ichotransform";
}

// Pop-up entries may carry LightWave's "\x03(...)" icon codes; the user types the visible text.
std::string VisibleText(const std::string& s) {
  std::string out;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '\x03' && i + 1 < s.size() && s[i + 1] == '(') {
      const std::size_t close = s.find(')', i);
      if (close != std::string::npos) {
        i = close;
        continue;
      }
    }
    if (static_cast<unsigned char>(s[i]) >= 32) out.push_back(s[i]);
  }
  return Trim(out);
}

// How many numbers a control takes: three for colours and vector data.
int Components(const XPControl& control) {
  const ValueKind kind = control.kind();
  if (kind == ValueKind::Float3 || kind == ValueKind::Integer3) return 3;
  const std::string base = BaseClass(control.controlClass);
  if (kind == ValueKind::VParm && (base == "color" || base.find('3') != std::string::npos)) return 3;
  return 1;
}

std::vector<std::string> SplitValues(const std::string& text) {
  std::vector<std::string> words;
  std::string word;
  for (char c : text) {
    if (std::isspace(static_cast<unsigned char>(c)) || c == ',') {
      if (!word.empty()) words.push_back(word);
      word.clear();
    } else {
      word.push_back(c);
    }
  }
  if (!word.empty()) words.push_back(word);
  return words;
}

const XPControl* FindControl(const XPanel& panel, const std::string& label, std::string* error) {
  for (const XPControl& c : panel.controls())
    if (c.label == label) return &c;
  const XPControl* found = nullptr;
  for (const XPControl& c : panel.controls())
    if (!found && Lower(c.label) == Lower(label)) found = &c;
  if (found) return found;
  std::string known;
  for (const XPControl& c : panel.controls())
    if (!c.label.empty()) known += (known.empty() ? "" : ", ") + Quoted(c.label);
  *error = "no control labelled " + Quoted(label) + (known.empty() ? "" : "; the panel has " + known);
  return nullptr;
}

std::string LastProblem(const XPanel& panel, std::size_t before) {
  const auto& problems = panel.problems();
  return problems.size() > before ? problems.back() : "the panel refused the value";
}

bool ParseBoolean(const std::string& text, int* value) {
  const std::string t = Lower(Trim(text));
  if (t == "on" || t == "yes" || t == "true" || t == "1") {
    *value = 1;
    return true;
  }
  if (t == "off" || t == "no" || t == "false" || t == "0") {
    *value = 0;
    return true;
  }
  return false;
}

// ---- the file's lines ----

struct Line {
  int number = 0;
  std::vector<std::string> words;
};

class Parser {
 public:
  Parser(std::string file, std::string baseDir, VariableLookup variables)
      : file_(std::move(file)), baseDir_(std::move(baseDir)), variables_(std::move(variables)) {
    if (!variables_) variables_ = [](const std::string& name) -> const char* { return std::getenv(name.c_str()); };
  }

  Network parse(const std::string& text) {
    Network network;
    network.file = file_;
    std::istringstream in(text);
    std::string raw;
    int number = 0;
    bool sawOutput = false;
    while (std::getline(in, raw)) {
      ++number;
      Line line{number, split(raw, number)};
      if (line.words.empty()) continue;
      const scenelines::Fail sceneFail = [this, number](const std::string& why) { fail(number, why); };
      if (scenelines::IsSettingLine(line.words[0])) {
        if (!settingsSeen_.insert(line.words[0]).second) fail(number, line.words[0] + " is given twice");
        scenelines::ParseSetting(line.words, network.settings, sceneFail);
        continue;
      }
      if (scenelines::IsItemLine(line.words[0])) {
        ItemStatement item = scenelines::ParseItem(line.words, sceneFail);
        if (!item.surfaceNode.empty() && !nodes_.count(item.surfaceNode))
          fail(number, "no node " + Quoted(item.surfaceNode) + " is declared above");
        network.settings.scene = true;
        cameras_ += item.type == LWI_CAMERA;
        network.statements.push_back(NetworkStatement{number, std::move(item)});
        continue;
      }
      NetworkStatement statement = parseLine(line);
      if (std::holds_alternative<OutputStatement>(statement.what)) {
        if (sawOutput) fail(number, "a second output line; a network renders one output");
        sawOutput = true;
      }
      network.statements.push_back(std::move(statement));
    }
    if (network.settings.scene) {
      if (sawOutput) fail(0, "a scene shades its objects through their surfaces; it has no output line");
      if (cameras_ == 0) fail(0, "a scene needs a camera line (e.g. \"camera cam position 0 1 -5 target 0 0 0\")");
      return network;
    }
    if (!sawOutput) fail(0, "no output line (e.g. \"output cc.Colour\")");
    return network;
  }

 private:
  [[noreturn]] void fail(int line, const std::string& reason) const { throw NetworkError(file_, line, reason); }

  std::vector<std::string> split(const std::string& raw, int number) const {
    auto words = SplitScriptWords(raw, false);
    if (!words) fail(number, "a quote is not closed");
    return std::move(*words);
  }

  NetworkStatement parseLine(const Line& line) {
    const std::string& what = line.words[0];
    NetworkStatement s;
    s.line = line.number;
    if (what == "module")
      s.what = parseModule(line);
    else if (what == "fps")
      s.what = parseFps(line);
    else if (what == "node")
      s.what = parseNode(line);
    else if (what == "set")
      s.what = parseSet(line);
    else if (what == "key")
      s.what = parseKey(line);
    else if (what == "connect")
      s.what = parseConnect(line);
    else if (what == "output")
      s.what = parseOutput(line);
    else
      fail(line.number, "unknown statement " + Quoted(what) +
                            " (expected module, fps, node, set, key, connect or output; in scenes also camera, "
                            "object, light, depth, threads, frames, size, ambient or backdrop)");
    return s;
  }

  ModuleStatement parseModule(const Line& line) {
    if (line.words.size() != 3) fail(line.number, "expected: module NAME PATH");
    ModuleStatement m;
    m.alias = line.words[1];
    if (!IsName(m.alias)) fail(line.number, Quoted(m.alias) + " is not a name (letters, digits, _ and -)");
    if (modules_.count(m.alias)) fail(line.number, "module " + Quoted(m.alias) + " is declared twice");
    m.path = expand(line.words[2], line.number);
    if (m.path.empty()) fail(line.number, "the module path is empty");
    // "/x" has no drive on Windows, yet it names no place under the network's folder.
    if (!baseDir_.empty() && !std::filesystem::path(m.path).has_root_directory())
      m.path = (std::filesystem::path(baseDir_) / m.path).lexically_normal().string();
    modules_.insert(m.alias);
    return m;
  }

  FpsStatement parseFps(const Line& line) {
    FpsStatement f;
    if (line.words.size() != 2 || !ParseDouble(line.words[1], &f.fps) || f.fps <= 0)
      fail(line.number, "expected: fps RATE, a positive number");
    return f;
  }

  NodeStatement parseNode(const Line& line) {
    const auto& w = line.words;
    if (w.size() < 4 || w[2] != "=") fail(line.number, "expected: node NAME = TYPE [VALUES]");
    NodeStatement n;
    n.name = w[1];
    if (!IsName(n.name)) fail(line.number, Quoted(n.name) + " is not a name (letters, digits, _ and -)");
    if (nodes_.count(n.name)) fail(line.number, "node " + Quoted(n.name) + " is declared twice");
    const std::string& type = w[3];
    const std::vector<std::string> args(w.begin() + 4, w.end());
    auto numbers = [&](std::size_t count, const char* usage) {
      if (args.size() != count) fail(line.number, std::string("expected: node NAME = ") + usage);
      for (std::size_t i = 0; i < count; ++i)
        if (!ParseDouble(args[i], &n.numbers[i]))
          fail(line.number, Quoted(args[i]) + " is not a number (" + usage + ")");
    };
    if (type == "Color" || type == "Colour") {
      n.kind = NodeStatement::Kind::Color;
      numbers(3, "Color R G B");
    } else if (type == "Scalar") {
      n.kind = NodeStatement::Kind::Scalar;
      numbers(1, "Scalar VALUE");
    } else if (type == "Vector") {
      n.kind = NodeStatement::Kind::Vector;
      numbers(3, "Vector X Y Z");
    } else if (type == "Integer") {
      n.kind = NodeStatement::Kind::Integer;
      int value = 0;
      if (args.size() != 1 || !ParseInt(args[0], &value))
        fail(line.number, "expected: node NAME = Integer N, a whole number");
      n.numbers[0] = value;
    } else if (type == "Material") {
      n.kind = NodeStatement::Kind::Material;
      n.material = parseMaterial(line, args);
    } else if (type == "SpotPosition" || type == "SpotNormal") {
      n.kind = type == "SpotPosition" ? NodeStatement::Kind::SpotPosition : NodeStatement::Kind::SpotNormal;
      if (!args.empty()) fail(line.number, type + " takes no values");
    } else if (modules_.count(type)) {
      n.kind = NodeStatement::Kind::Plugin;
      if (args.size() != 1) fail(line.number, "expected: node NAME = " + type + " SERVER");
      n.module = type;
      n.server = args[0];
    } else {
      fail(line.number, "unknown node type " + Quoted(type) +
                            " (Color, Scalar, Vector, Integer, Material, SpotPosition, SpotNormal, or a module "
                            "declared above followed by a server name)");
    }
    nodes_[n.name] = n.kind == NodeStatement::Kind::Plugin;
    return n;
  }

  LWNodalMaterial parseMaterial(const Line& line, const std::vector<std::string>& args) {
    LWNodalMaterial m{};
    const char* usage =
        "Material [diffuse R G B] [specular R G B] [reflection R G B] [refraction R G B] [transparency T]";
    for (std::size_t i = 0; i < args.size();) {
      const std::string channel = Lower(args[i]);
      double* target = channel == "diffuse"        ? m.diffuse
                       : channel == "specular"     ? m.specular
                       : channel == "reflection"   ? m.reflection
                       : channel == "refraction"   ? m.refraction
                       : channel == "transparency" ? &m.transparency
                                                   : nullptr;
      if (!target) fail(line.number, "unknown material channel " + Quoted(args[i]) + " (" + usage + ")");
      const std::size_t count = target == &m.transparency ? 1 : 3;
      if (i + count >= args.size()) fail(line.number, args[i] + " needs " + std::to_string(count) + " number(s)");
      for (std::size_t k = 0; k < count; ++k)
        if (!ParseDouble(args[i + 1 + k], &target[k]))
          fail(line.number, Quoted(args[i + 1 + k]) + " is not a number (" + args[i] + ")");
      i += count + 1;
    }
    return m;
  }

  void requirePluginNode(const Line& line, const std::string& name) {
    auto it = nodes_.find(name);
    if (it == nodes_.end()) fail(line.number, "no node " + Quoted(name) + " is declared above");
    if (!it->second) fail(line.number, "node " + Quoted(name) + " is one of the host's own and has no panel controls");
  }

  SetStatement parseSet(const Line& line) {
    const auto& w = line.words;
    if (w.size() < 4) fail(line.number, "expected: set NODE \"Label\" VALUE");
    requirePluginNode(line, w[1]);
    SetStatement s{w[1], w[2], w[3]};
    for (std::size_t i = 4; i < w.size(); ++i) s.value += " " + w[i];
    return s;
  }

  KeyStatement parseKey(const Line& line) {
    const auto& w = line.words;
    if (w.size() < 5 || (w.size() - 3) % 2 != 0)
      fail(line.number, "expected: key NODE \"Label\" FRAME VALUE [FRAME VALUE]...");
    requirePluginNode(line, w[1]);
    KeyStatement k;
    k.node = w[1];
    k.label = w[2];
    for (std::size_t i = 3; i + 1 < w.size(); i += 2) {
      KeyStatement::Key key{0, w[i + 1]};
      if (!ParseDouble(w[i], &key.frame)) fail(line.number, Quoted(w[i]) + " is not a frame number");
      k.keys.push_back(key);
    }
    return k;
  }

  // "node.Connector Name" (the connector may be quoted, e.g. mix."Bg Material").
  std::pair<std::string, std::string> connector(const Line& line, const std::string& text, const char* role) {
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == text.size())
      fail(line.number, "expected NODE.CONNECTOR for the " + std::string(role) + ", got " + Quoted(text));
    const std::string node = text.substr(0, dot);
    if (!nodes_.count(node)) fail(line.number, "no node " + Quoted(node) + " is declared above");
    return {node, Trim(text.substr(dot + 1))};
  }

  // Words joined again with one blank: a connector name may span words (t.Frames per Second).
  static std::string Joined(std::vector<std::string>::const_iterator from,
                            std::vector<std::string>::const_iterator to) {
    std::string s;
    for (auto it = from; it != to; ++it) s += (s.empty() ? "" : " ") + *it;
    return s;
  }

  ConnectStatement parseConnect(const Line& line) {
    const std::string both = Joined(line.words.begin() + 1, line.words.end());
    const std::size_t arrow = both.find("->");
    if (arrow == std::string::npos) fail(line.number, "expected: connect NODE.OUTPUT -> NODE.INPUT");
    ConnectStatement c;
    std::tie(c.fromNode, c.output) = connector(line, Trim(both.substr(0, arrow)), "output");
    std::tie(c.toNode, c.input) = connector(line, Trim(both.substr(arrow + 2)), "input");
    return c;
  }

  OutputStatement parseOutput(const Line& line) {
    if (line.words.size() < 2) fail(line.number, "expected: output NODE.OUTPUT");
    OutputStatement o;
    std::tie(o.node, o.output) = connector(line, Joined(line.words.begin() + 1, line.words.end()), "output");
    return o;
  }

  // $NAME, ${NAME} and ${NAME:-default}; "$$" is a dollar sign.
  std::string expand(const std::string& text, int number) const {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] != '$') {
        out.push_back(text[i]);
        continue;
      }
      if (i + 1 < text.size() && text[i + 1] == '$') {
        out.push_back('$');
        ++i;
        continue;
      }
      std::string name, fallback;
      bool hasFallback = false;
      if (i + 1 < text.size() && text[i + 1] == '{') {
        const std::size_t close = text.find('}', i + 2);
        if (close == std::string::npos) fail(number, "a ${ is not closed in " + Quoted(text));
        name = text.substr(i + 2, close - i - 2);
        const std::size_t dash = name.find(":-");
        if (dash != std::string::npos) {
          fallback = name.substr(dash + 2);
          name.resize(dash);
          hasFallback = true;
        }
        i = close;
      } else {
        std::size_t end = i + 1;
        while (end < text.size() && (std::isalnum(static_cast<unsigned char>(text[end])) || text[end] == '_')) ++end;
        name = text.substr(i + 1, end - i - 1);
        i = end - 1;
      }
      if (name.empty()) fail(number, "a $ without a variable name in " + Quoted(text));
      const char* value = variables_(name);
      if (value && *value)
        out += value;
      else if (hasFallback)
        out += fallback;
      else
        fail(number, "environment variable " + name + " is not set");
    }
    return out;
  }

  std::string file_;
  std::string baseDir_;
  VariableLookup variables_;
  std::set<std::string> modules_;
  std::map<std::string, bool> nodes_;  // name -> is a plug-in node
  std::set<std::string> settingsSeen_;
  int cameras_ = 0;
};

// ---- building ----

class Builder {
 public:
  Builder(Session& session, const Network& network) : session_(session), network_(network) {}

  BuiltNetwork build() {
    const SceneSettings& settings = network_.settings;
    if (settings.hasAmbient) session_.scene().setAmbient(settings.ambient, settings.ambientIntensity);
    for (const NetworkStatement& s : network_.statements) {
      line_ = s.line;
      std::visit([this](const auto& statement) { apply(statement); }, s.what);
    }
    return built_;
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const { throw NetworkError(network_.file, line_, reason); }

  void apply(const ModuleStatement& m) {
    std::error_code ec;
    std::string canonical = std::filesystem::weakly_canonical(m.path, ec).string();
    if (ec || canonical.empty()) canonical = m.path;
    for (const auto& [alias, loaded] : modulePaths_)
      if (loaded == canonical) fail("module file " + Quoted(m.path) + " is already loaded as " + Quoted(alias));
    try {
      modules_[m.alias] = &session_.load(m.path);
    } catch (const ModuleError& e) {
      fail(std::string("cannot load module: ") + e.what());
    }
    modulePaths_[m.alias] = canonical;
  }

  void apply(const FpsStatement& f) {
    try {
      session_.scene().setFramesPerSecond(f.fps);
    } catch (const std::exception& e) {
      fail(e.what());
    }
  }

  void apply(const NodeStatement& n) {
    NodeEditor& editor = session_.nodes();
    Node* node = nullptr;
    using Kind = NodeStatement::Kind;
    switch (n.kind) {
      case Kind::Color: node = &editor.addColor(n.numbers[0], n.numbers[1], n.numbers[2]); break;
      case Kind::Scalar: node = &editor.addScalar(n.numbers[0]); break;
      case Kind::Vector: node = &editor.addVector(n.numbers[0], n.numbers[1], n.numbers[2]); break;
      case Kind::Integer: node = &editor.addInteger(static_cast<int>(n.numbers[0])); break;
      case Kind::Material: node = &editor.addMaterial(n.material); break;
      case Kind::SpotPosition: node = &editor.addSpotPosition(); break;
      case Kind::SpotNormal: node = &editor.addSpotNormal(); break;
      case Kind::Plugin: node = &addPlugin(n); break;
    }
    built_.nodes[n.name] = node;
  }

  PluginNode& addPlugin(const NodeStatement& n) {
    const ModuleFile& module = *modules_.at(n.module);
    if (!module.find(LWNODE_HCLASS, n.server)) {
      std::string known;
      for (const ServerRecord* r : module.records())
        if (r->className && r->name && std::strcmp(r->className, LWNODE_HCLASS) == 0)
          known += (known.empty() ? "" : ", ") + std::string(r->name);
      fail("module " + Quoted(n.module) + " has no node " + Quoted(n.server) +
           (known.empty() ? " (it has no nodes)" : " (its nodes: " + known + ")"));
    }
    try {
      return session_.nodes().addPluginNode(module, n.server);
    } catch (const CreationError& e) {
      fail("node " + Quoted(n.server) + " refused to be created: " + e.what());
    }
  }

  PluginNode& pluginNode(const std::string& name) {
    // The parser let only plug-in nodes through to set and key lines.
    return static_cast<PluginNode&>(*built_.nodes.at(name));
  }

  XPanel& panelOf(const std::string& name) {
    auto known = panels_.find(name);
    if (known != panels_.end()) return *known->second;
    PluginNode& node = pluginNode(name);
    if (!node.hasInterface()) fail("node " + Quoted(name) + " (" + node.serverName() + ") has no panel");
    InterfaceActivation a = node.activateInterface();
    if (a.result != AFUNC_OK)
      fail("the panel of node " + Quoted(name) + " refused activation (code " + std::to_string(a.result) + ")");
    XPanel* panel = a.local.panel ? session_.xpanels().find(a.local.panel) : nullptr;
    if (!panel) fail("node " + Quoted(name) + " (" + node.serverName() + ") gave no form panel to type values into");
    panels_[name] = panel;
    return *panel;
  }

  VParm* parameterOf(XPanel& panel, const XPControl& control) {
    if (control.kind() != ValueKind::VParm) return nullptr;
    return session_.animation().parameter(panel.value(control.cid).vparm);
  }

  void apply(const SetStatement& s) {
    XPanel& panel = panelOf(s.node);
    std::string error;
    const XPControl* control = FindControl(panel, s.label, &error);
    if (!control) fail(s.node + ": " + error);
    if (VParm* p = parameterOf(panel, *control); p && p->enveloped())
      fail(s.node + ": " + Quoted(control->label) + " has keys, which decide its value (set it before keying it)");
    error = SetControlFromText(panel, s.label, s.value);
    if (!error.empty()) fail(s.node + ": " + error);
  }

  void apply(const KeyStatement& k) {
    XPanel& panel = panelOf(k.node);
    std::string error;
    const XPControl* control = FindControl(panel, k.label, &error);
    if (!control) fail(k.node + ": " + error);
    const std::string label = control->label, controlClass = control->controlClass;
    if (control->kind() != ValueKind::VParm)
      fail(k.node + ": " + Quoted(label) +
           " cannot be keyed: only envelope controls (\"...-env\") can, and its class is " + controlClass);
    VParm* parameter = parameterOf(panel, *control);
    if (!parameter) fail(k.node + ": " + Quoted(label) + " " + kNoValue);
    const double fps = session_.scene().sceneInfo().framesPerSecond;
    const bool fresh = !parameter->enveloped();
    bool keyAtZero = false;
    for (const KeyStatement::Key& key : k.keys) {
      double value = 0;
      if (!ParseControlNumber(controlClass, key.value, &value, &error))
        fail(k.node + ": " + Quoted(label) + " " + error);
      const LWTime time = key.frame / fps;
      keyAtZero = keyAtZero || std::fabs(time) < Envelope::kTimeTolerance;
      for (int channel = 0; channel < parameter->channelCount(); ++channel) {
        const EnvelopeKey* made = parameter->addKey(channel, time, value);
        Envelope* envelope = parameter->envelope(channel);
        if (!made || !envelope) fail(k.node + ": the host could not key " + Quoted(label));
        // Straight lines between keys, so that values in between are easy to predict.
        envelope->setAttribute(made, LWKEY_SHAPE, kShapeLinear);
      }
    }
    // Enveloping starts the curve with a key at frame 0 holding the old value; only the keys
    // written in the file should shape it.
    if (fresh && !keyAtZero)
      for (int channel = 0; channel < parameter->channelCount(); ++channel)
        if (Envelope* envelope = parameter->envelope(channel)) envelope->removeKey(envelope->keyAt(0.0));
  }

  void apply(const ConnectStatement& c) {
    try {
      session_.nodes().connect(*built_.nodes.at(c.fromNode), c.output, *built_.nodes.at(c.toNode), c.input);
    } catch (const NodeError& e) {
      fail(built_.withFileNames(e.what()));
    }
  }

  void apply(const OutputStatement& o) {
    Node& node = *built_.nodes.at(o.node);
    NodeOutput* output = node.output(o.output);
    if (!output) {
      std::string known;
      for (const auto& out : node.outputs()) known += (known.empty() ? "" : ", ") + Quoted(out->name());
      fail("node " + Quoted(o.node) + " has no output " + Quoted(o.output) +
           (known.empty() ? "" : " (it has " + known + ")"));
    }
    built_.output = output;
  }

  void apply(const ItemStatement& item) {
    Scene& scene = session_.scene();
    try {
      const LWItemID id = item.type == LWI_CAMERA  ? scene.addCamera(item.name)
                          : item.type == LWI_LIGHT ? scene.addLight(item.name)
                                                   : scene.addObject(item.name);
      scene.setPosition(id, item.position[0], item.position[1], item.position[2]);
      if (item.aimed) scene.aim(id, item.target);
      if (item.type == LWI_CAMERA) scene.setCameraLook(id, item.camera);
      if (item.type == LWI_LIGHT) scene.setLightLook(id, item.light);
      if (item.type != LWI_OBJECT) return;
      scene.setObjectLook(id, item.object);
      Surface surface = item.surface;
      if (!item.surfaceNode.empty()) {
        Node& node = *built_.nodes.at(item.surfaceNode);
        surface.output = node.output(item.surfaceOutput);
        if (!surface.output) fail("node " + Quoted(item.surfaceNode) + " has no output " + Quoted(item.surfaceOutput));
      }
      built_.surfaces[id] = surface;
    } catch (const std::invalid_argument& e) {
      fail(e.what());
    } catch (const std::length_error& e) {
      fail(e.what());
    }
  }

  Session& session_;
  const Network& network_;
  int line_ = 0;
  BuiltNetwork built_;
  std::map<std::string, const ModuleFile*> modules_;
  std::map<std::string, std::string> modulePaths_;
  std::map<std::string, XPanel*> panels_;
};

}  // namespace

NetworkError::NetworkError(const std::string& file, int line, const std::string& reason)
    : std::runtime_error(file + ":" + (line > 0 ? std::to_string(line) + ":" : std::string()) + " " + reason),
      file_(file),
      line_(line),
      reason_(reason) {}

Network ParseNetwork(const std::string& text, const std::string& file, const std::string& baseDir,
                     const VariableLookup& variables) {
  return Parser(file, baseDir, variables).parse(text);
}

Network ReadNetworkFile(const std::string& path) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) throw NetworkError(path, 0, "is a folder, not a network file");
  std::ifstream in(path, std::ios::binary);
  if (!in) throw NetworkError(path, 0, std::string("cannot read the file: ") + std::strerror(errno));
  std::ostringstream text;
  text << in.rdbuf();
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  return ParseNetwork(text.str(), path, folder.empty() ? "." : folder.string());
}

BuiltNetwork BuildNetwork(Session& session, const Network& network) { return Builder(session, network).build(); }

std::string BuiltNetwork::withFileNames(std::string message) const {
  for (const auto& [name, node] : nodes) {
    const std::string editorName = Quoted(node->name()), fileName = Quoted(name);
    for (std::size_t at = message.find(editorName); at != std::string::npos;
         at = message.find(editorName, at + fileName.size()))
      message.replace(at, editorName.size(), fileName);
  }
  return message;
}

bool ParseControlNumber(const std::string& controlClass, const std::string& text, double* value, std::string* error) {
  const std::string base = BaseClass(controlClass);
  std::string t = Trim(text);
  const char* expect = "a number";
  double scale = 1.0;
  auto dropUnit = [&t](std::initializer_list<const char*> units) {
    for (const char* unit : units)
      if (EndsWith(Lower(t), unit)) {
        t = Trim(t.substr(0, t.size() - std::strlen(unit)));
        return;
      }
  };
  if (base.rfind("percent", 0) == 0) {
    dropUnit({"%"});
    expect = "a percentage such as 50 or 50%";
    scale = 0.01;
  } else if (base.rfind("angle", 0) == 0) {
    dropUnit({"\xC2\xB0", "\xB0", "deg"});
    expect = "an angle in degrees such as 90";
    scale = kPi / 180.0;
  } else if (base == "color") {
    expect = "a colour channel from 0 to 255";
    scale = 1.0 / 255.0;
  } else if (base.rfind("distance", 0) == 0) {
    dropUnit({"m"});
    expect = "a distance in metres";
  } else if (base == "time") {
    dropUnit({"s"});
    expect = "a time in seconds";
  }
  double v = 0;
  if (!ParseDouble(t, &v)) {
    *error = "expects " + std::string(expect) + ", got " + Quoted(text);
    return false;
  }
  *value = v * scale;
  return true;
}

std::string SetControlFromText(XPanel& panel, const std::string& label, const std::string& text) {
  std::string error;
  const XPControl* found = FindControl(panel, label, &error);
  if (!found) return error;
  // Copies: the plug-in's callbacks may re-describe the panel while we set.
  const XPControl control = *found;
  const std::string name = Quoted(control.label);
  const std::string base = BaseClass(control.controlClass);
  if (base == "vbutton" || base == "vpopcmd" || base == "dthumbnail")
    return name + " holds no value (its class is " + control.controlClass + ")";
  if (!control.vid) return name + " has no value in the panel's data table";

  const std::size_t before = panel.problems().size();
  auto done = [&](bool ok) { return ok ? std::string() : name + ": " + LastProblem(panel, before); };

  if (base == "iboolean") {
    int on = 0;
    if (!ParseBoolean(text, &on)) return name + " expects on or off, got " + Quoted(text);
    return done(panel.setInteger(control.cid, on));
  }
  if (IsPopupClass(base)) {
    const std::vector<std::string> entries = panel.popupEntries(control.cid);
    const std::string wanted = Lower(Trim(text));
    for (std::size_t i = 0; i < entries.size(); ++i)
      if (Lower(VisibleText(entries[i])) == wanted) return done(panel.choose(control.cid, static_cast<int>(i)));
    int index = -1;
    if (ParseInt(Trim(text), &index) && index >= 0 && static_cast<std::size_t>(index) < entries.size())
      return done(panel.choose(control.cid, index));
    std::string known;
    for (const std::string& e : entries) known += (known.empty() ? "" : ", ") + VisibleText(e);
    return name + " has no entry " + Quoted(text) + (known.empty() ? "" : " (entries: " + known + ")");
  }

  switch (control.kind()) {
    case ValueKind::String: return done(panel.setText(control.cid, text));
    case ValueKind::Integer: {
      int v = 0;
      if (!ParseInt(Trim(text), &v)) return name + " expects a whole number, got " + Quoted(text);
      return done(panel.setInteger(control.cid, v));
    }
    case ValueKind::Float:
    case ValueKind::Float3:
    case ValueKind::Integer3:
    case ValueKind::VParm: {
      const int count = Components(control);
      // One number may carry a unit after a blank ("50 %"), so single values are read whole.
      const std::vector<std::string> words = count == 1 ? std::vector<std::string>{text} : SplitValues(text);
      if (static_cast<int>(words.size()) != count)
        return name + " expects " + std::to_string(count) + " numbers, got " + Quoted(text);
      if (control.kind() == ValueKind::VParm && !panel.value(control.cid).vparm) return name + " " + kNoValue;
      double v[3] = {0, 0, 0};
      for (int i = 0; i < count; ++i)
        if (!ParseControlNumber(control.controlClass, words[i], &v[i], &error)) return name + " " + error;
      if (control.kind() == ValueKind::Integer3)
        for (double& x : v)
          if (x != std::trunc(x)) return name + " expects whole numbers, got " + Quoted(text);
      return done(count == 3 ? panel.setVector(control.cid, v) : panel.setNumber(control.cid, v[0]));
    }
    default: return name + " holds data of type " + Quoted(control.dataType) + ", which cannot be typed in";
  }
}

}  // namespace lwhost
