#pragma once

#include <lwnodes.h>

#include <lwrender.h>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "lwhost/ItemLooks.h"
#include "lwhost/SceneRenderer.h"

namespace lwhost {

class Node;
class NodeOutput;
class Session;
class XPanel;

// A fault in a network file. what() is "FILE:LINE: reason", or "FILE: reason" when no single
// line is to blame (line 0).
class NetworkError : public std::runtime_error {
 public:
  NetworkError(const std::string& file, int line, const std::string& reason);
  const std::string& file() const { return file_; }
  int line() const { return line_; }
  const std::string& reason() const { return reason_; }

 private:
  std::string file_;
  int line_;
  std::string reason_;
};

// The statements of a network file (the format is described in host/RENDERING.md), each with
// the line it came from. Values typed for panel controls stay text until the control is known,
// because their unit (%, degrees, 0..255) depends on the control.
struct ModuleStatement {
  std::string alias;
  std::string path;  // variables expanded, relative paths resolved against the file's folder
};
struct FpsStatement {
  double fps = 0;
};
struct NodeStatement {
  enum class Kind { Color, Scalar, Vector, Integer, Material, SpotPosition, SpotNormal, Plugin };
  std::string name;
  Kind kind = Kind::Color;
  double numbers[3] = {0, 0, 0};  // Color, Vector, Scalar (first), Integer (first, whole)
  LWNodalMaterial material{};
  std::string module;  // Plugin: the module's alias
  std::string server;  // Plugin: the NodeHandler server name
};
struct SetStatement {
  std::string node, label, value;
};
struct KeyStatement {
  struct Key {
    double frame;
    std::string value;
  };
  std::string node, label;
  std::vector<Key> keys;
};
struct ConnectStatement {
  std::string fromNode, output, toNode, input;
};
struct OutputStatement {
  std::string node, output;
};

// A camera, object or light of a scene file, in file order (which is the host's order).
struct ItemStatement {
  LWItemType type = LWI_OBJECT;
  std::string name;
  double position[3] = {0, 0, 0};
  bool aimed = false;
  double target[3] = {0, 0, 0};
  ObjectLook object;
  LightLook light;
  CameraLook camera;
  std::string surfaceNode, surfaceOutput;  // empty: the plain colour below
  Surface surface;                         // colour and emit; the output is found when built
};

struct NetworkStatement {
  int line = 0;
  std::variant<ModuleStatement, FpsStatement, NodeStatement, SetStatement, KeyStatement, ConnectStatement,
               OutputStatement, ItemStatement>
      what;
};

// Settings of a scene file; what is not given keeps the command's or the renderer's default.
struct SceneSettings {
  bool scene = false;  // the file has cameras, objects or lights: it renders a scene
  int depth = -1, threads = 0;
  bool hasFrames = false;
  LWFrame first = 0, last = 0;
  int width = 0, height = 0;
  bool hasAmbient = false;
  double ambient[3] = {1, 1, 1}, ambientIntensity = 0.05;
  double backdrop[3] = {0, 0, 0};
};

struct Network {
  std::string file;  // as named to the reader; errors quote it
  std::vector<NetworkStatement> statements;
  SceneSettings settings;
};

// Answers environment variables for ${NAME}; the default reads the process environment.
using VariableLookup = std::function<const char*(const std::string& name)>;

// Parses a network file's text. Checks everything that needs no module: syntax, numbers, names
// declared before use, exactly one output. `baseDir` resolves relative module paths (empty: as
// given). Throws NetworkError.
Network ParseNetwork(const std::string& text, const std::string& file, const std::string& baseDir = "",
                     const VariableLookup& variables = {});
// Reads and parses a file; relative module paths are taken from the file's folder.
Network ReadNetworkFile(const std::string& path);

// A network built into a session: its nodes by the names the file gave them, and the output
// to render. The pointers belong to the session's node editor.
struct BuiltNetwork {
  std::map<std::string, Node*> nodes;
  NodeOutput* output = nullptr;  // networks; scenes shade through surfaces
  std::map<LWItemID, Surface> surfaces;

  // A message about nodes with the editor's names ("Material (2)") replaced by the file's.
  std::string withFileNames(std::string message) const;
};

// Loads the modules, adds and connects the nodes, types the values into the plug-in nodes'
// panels and keys their envelopes, in file order. Throws NetworkError naming the line whose
// request the host or a plug-in refused.
BuiltNetwork BuildNetwork(Session& session, const Network& network);

// Types `text` into the control labelled `label` as a user would type it into LightWave's panel:
// percentages in percent ("50" or "50%"), angles in degrees ("90" or "90deg"), colours as three
// 0..255 channels ("255 128 0"), distances in metres, times in seconds, check boxes as on/off,
// yes/no, true/false or 1/0, pop-ups by entry text (case ignored) or 0-based index. Labels match
// exactly, else ignoring case. Returns an empty string on success, else why not.
std::string SetControlFromText(XPanel& panel, const std::string& label, const std::string& text);

// One number typed into a control of class `controlClass` (e.g. "percent-env"), converted to the
// value the plug-in stores (a fraction, radians, ...). False, with `error` set, for bad text.
bool ParseControlNumber(const std::string& controlClass, const std::string& text, double* value, std::string* error);

}  // namespace lwhost
