#include "SceneLines.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <set>

namespace lwhost::scenelines {

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

std::string Quoted(const std::string& s) { return "\"" + s + "\""; }

bool Number(const std::string& text, double* value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  const double v = std::strtod(text.c_str(), &end);
  if (*end != '\0' || errno == ERANGE || !std::isfinite(v)) return false;
  *value = v;
  return true;
}

bool Whole(const std::string& text, long* value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  const long v = std::strtol(text.c_str(), &end, 10);
  if (*end != '\0' || errno == ERANGE || v < -1000000000L || v > 1000000000L) return false;
  *value = v;
  return true;
}

// Reads keyword-value pairs after the item's type word.
class Words {
 public:
  Words(const std::vector<std::string>& words, std::size_t start, const Fail& fail)
      : words_(words), at_(start), fail_(fail) {}
  bool done() const { return at_ >= words_.size(); }
  std::string next() { return words_[at_++]; }
  void numbers(const std::string& keyword, double* out, int count) {
    for (int i = 0; i < count; ++i) {
      if (done()) fail_(keyword + " needs " + std::to_string(count) + " number(s)");
      const std::string word = next();
      if (!Number(word, &out[i])) fail_(Quoted(word) + " is not a number (" + keyword + ")");
    }
  }
  double number(const std::string& keyword) {
    double v = 0;
    numbers(keyword, &v, 1);
    return v;
  }
  std::string word(const std::string& keyword) {
    if (done()) fail_(keyword + " needs a value");
    return next();
  }
  // `scale S` or `scale X Y Z`: three numbers when the next three words all are.
  void oneOrThree(const std::string& keyword, double out[3]) {
    double v[3];
    const bool three = at_ + 2 < words_.size() && Number(words_[at_], &v[0]) && Number(words_[at_ + 1], &v[1]) &&
                       Number(words_[at_ + 2], &v[2]);
    if (three) {
      numbers(keyword, out, 3);
    } else {
      out[0] = out[1] = out[2] = number(keyword);
    }
  }

 private:
  const std::vector<std::string>& words_;
  std::size_t at_;
  const Fail& fail_;
};

bool OnOff(const std::string& word, const Fail& fail) {
  if (word == "on" || word == "yes") return true;
  if (word == "off" || word == "no") return false;
  fail("expected on or off, not " + Quoted(word));
  return false;
}

void Once(std::set<std::string>& seen, const std::string& keyword, const Fail& fail) {
  if (!seen.insert(keyword).second) fail(keyword + " is given twice");
}

}  // namespace

bool IsItemLine(const std::string& k) { return k == "camera" || k == "object" || k == "light"; }

bool IsSettingLine(const std::string& k) {
  return k == "depth" || k == "threads" || k == "frames" || k == "size" || k == "ambient" || k == "backdrop";
}

ItemStatement ParseItem(const std::vector<std::string>& w, const Fail& fail) {
  const std::string& what = w[0];
  ItemStatement s;
  if (w.size() < 2) fail("expected: " + what + " NAME ...");
  s.name = w[1];
  std::size_t start = 2;
  std::string kind;
  if (what == "camera") {
    s.type = LWI_CAMERA;
  } else if (what == "object") {
    s.type = LWI_OBJECT;
    if (w.size() < 3 || (w[2] != "sphere" && w[2] != "plane"))
      fail("expected: object NAME sphere|plane [position X Y Z] [scale S] [surface NODE.OUTPUT [emit] | colour R G B] "
           "[shadows on|off]");
    s.object.shape = w[2] == "sphere" ? ObjectShape::Sphere : ObjectShape::Plane;
    start = 3;
  } else {
    s.type = LWI_LIGHT;
    if (w.size() < 3 || (w[2] != "distant" && w[2] != "point" && w[2] != "spot"))
      fail("expected: light NAME distant|point|spot [position X Y Z] [target X Y Z] [colour R G B] [intensity I] "
           "[falloff linear|inverse|inverse2 RANGE] [cone ANGLE EDGE] [shadows on|off]");
    s.light.type = w[2] == "distant" ? LWLIGHT_DISTANT : w[2] == "point" ? LWLIGHT_POINT : LWLIGHT_SPOT;
    start = 3;
  }

  Words in(w, start, fail);
  std::set<std::string> seen;
  while (!in.done()) {
    const std::string key = in.next();
    Once(seen, key, fail);
    if (key == "position") {
      in.numbers(key, s.position, 3);
    } else if (key == "target" && s.type != LWI_OBJECT) {
      in.numbers(key, s.target, 3);
      s.aimed = true;
    } else if (key == "zoom" && s.type == LWI_CAMERA) {
      s.camera.zoom = in.number(key);
      if (!(s.camera.zoom > 0)) fail("the zoom factor must be above 0");
    } else if (key == "scale" && s.type == LWI_OBJECT) {
      in.oneOrThree(key, s.object.scale);
      for (double v : s.object.scale)
        if (v < 0) fail("the scale must not be negative");
    } else if ((key == "colour" || key == "color") && s.type != LWI_CAMERA) {
      if (seen.count("surface")) fail("an object has a surface or a colour, not both");
      in.numbers(key, s.type == LWI_LIGHT ? s.light.colour : s.surface.colour, 3);
    } else if (key == "surface" && s.type == LWI_OBJECT) {
      if (seen.count("colour") || seen.count("color")) fail("an object has a surface or a colour, not both");
      const std::string connector = in.word(key);
      const std::size_t dot = connector.find('.');
      if (dot == std::string::npos || dot == 0 || dot + 1 == connector.size())
        fail("expected surface NODE.OUTPUT, got " + Quoted(connector));
      s.surfaceNode = connector.substr(0, dot);
      s.surfaceOutput = connector.substr(dot + 1);
    } else if (key == "emit" && s.type == LWI_OBJECT) {
      if (s.surfaceNode.empty()) fail("emit follows a surface: the network lights itself");
      s.surface.emit = true;
    } else if (key == "shadows" && s.type != LWI_CAMERA) {
      const bool on = OnOff(in.word(key), fail);
      if (s.type == LWI_LIGHT)
        s.light.shadowType = on ? LWLSHAD_RAYTRACE : LWLSHAD_OFF;
      else
        s.object.shadowOptions = on ? (LWOSHAD_SELF | LWOSHAD_CAST | LWOSHAD_RECEIVE) : 0u;
    } else if (key == "intensity" && s.type == LWI_LIGHT) {
      s.light.intensity = in.number(key);
      if (s.light.intensity < 0) fail("the intensity must not be negative");
    } else if (key == "falloff" && s.type == LWI_LIGHT && s.light.type != LWLIGHT_DISTANT) {
      const std::string kind = in.word(key);
      s.light.falloff = kind == "off"        ? LWLFALL_OFF
                        : kind == "linear"   ? LWLFALL_LINEAR
                        : kind == "inverse"  ? LWLFALL_INV_DIST
                        : kind == "inverse2" ? LWLFALL_INV_DIST_2
                                             : -1;
      if (s.light.falloff < 0) fail("unknown falloff " + Quoted(kind) + " (off, linear, inverse or inverse2)");
      if (s.light.falloff != LWLFALL_OFF) {
        s.light.range = in.number("falloff " + kind);
        if (!(s.light.range > 0)) fail("the falloff range must be above 0");
      }
    } else if (key == "cone" && s.type == LWI_LIGHT && s.light.type == LWLIGHT_SPOT) {
      double angles[2];
      in.numbers(key, angles, 2);
      if (!(angles[0] > 0 && angles[0] <= 90) || angles[1] < 0 || angles[1] > angles[0])
        fail("the cone angle must be above 0 and at most 90 degrees, its soft edge 0 up to the angle");
      s.light.coneAngle = angles[0] * kDegree;
      s.light.edgeAngle = angles[1] * kDegree;
    } else {
      fail(Quoted(key) + " is not a setting of a " + (s.type == LWI_LIGHT ? w[2] + " light" : what));
    }
  }
  if (s.type != LWI_OBJECT && s.aimed && s.target[0] == s.position[0] && s.target[1] == s.position[1] &&
      s.target[2] == s.position[2])
    fail("the target is where the " + what + " is: it points nowhere");
  return s;
}

void ParseSetting(const std::vector<std::string>& w, SceneSettings& settings, const Fail& fail) {
  const std::string& what = w[0];
  long a = 0, b = 0;
  if (what == "depth") {
    if (w.size() != 2 || !Whole(w[1], &a) || a < 0 || a > SceneRenderer::kMaxDepth)
      fail("expected: depth N, a whole number 0 to " + std::to_string(SceneRenderer::kMaxDepth));
    settings.depth = static_cast<int>(a);
  } else if (what == "threads") {
    if (w.size() != 2 || !Whole(w[1], &a) || a < 1 || a > SceneRenderer::kMaxThreads)
      fail("expected: threads N, a whole number 1 to " + std::to_string(SceneRenderer::kMaxThreads));
    settings.threads = static_cast<int>(a);
  } else if (what == "frames") {
    const std::string range = w.size() == 2 ? w[1] : "";
    const std::size_t dash = range.find('-', 1);
    const bool ok = dash == std::string::npos ? Whole(range, &a) && (b = a, true)
                                              : Whole(range.substr(0, dash), &a) && Whole(range.substr(dash + 1), &b);
    if (!ok || b < a) fail("expected: frames N or frames A-B, whole numbers with A <= B");
    settings.hasFrames = true;
    settings.first = static_cast<LWFrame>(a);
    settings.last = static_cast<LWFrame>(b);
  } else if (what == "size") {
    const std::string size = w.size() == 2 ? w[1] : "";
    const std::size_t x = size.find('x');
    if (x == std::string::npos || !Whole(size.substr(0, x), &a) || !Whole(size.substr(x + 1), &b) || a < 1 ||
        b < 1 || a > Raster::kMaxSide || b > Raster::kMaxSide)
      fail("expected: size WxH with each side 1 to " + std::to_string(Raster::kMaxSide));
    settings.width = static_cast<int>(a);
    settings.height = static_cast<int>(b);
  } else if (what == "ambient") {
    Words in(w, 1, fail);
    in.numbers("ambient R G B INTENSITY", settings.ambient, 3);
    settings.ambientIntensity = in.number("ambient R G B INTENSITY");
    if (!in.done() || settings.ambientIntensity < 0) fail("expected: ambient R G B INTENSITY");
    settings.hasAmbient = true;
  } else {
    Words in(w, 1, fail);
    in.numbers("backdrop R G B", settings.backdrop, 3);
    if (!in.done()) fail("expected: backdrop R G B");
  }
}

}  // namespace lwhost::scenelines
