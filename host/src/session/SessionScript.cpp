#include "lwhost/SessionScript.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <vector>

#include "io/ScriptWords.h"
#include "SceneFrameRenderer.h"
#include "lwhost/NetworkFile.h"
#include "lwhost/LayoutSession.h"

namespace lwhost {

namespace {

struct Line {
  int number = 0;
  std::vector<std::string> words;
};

class Runner {
 public:
  Runner(LayoutSession& session, std::string file, std::string baseDir)
      : session_(session), file_(std::move(file)), baseDir_(std::move(baseDir)) {}
  ~Runner() { session_.setRenderer(nullptr); }

  void run(const std::string& text) {
    std::istringstream in(text);
    std::vector<Line> lines;
    std::string raw;
    for (int number = 1; std::getline(in, raw); ++number) {
      Line line{number, split(raw, number)};
      if (!line.words.empty()) lines.push_back(std::move(line));
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const Line& line = lines[i];
      try {
        if (line.words[0] == "options") {
          std::vector<OptionsAction> actions;
          while (i + 1 < lines.size() && IsAction(lines[i + 1].words[0])) actions.push_back(action(lines[++i]));
          options(line, actions);
        } else {
          statement(line);
        }
      } catch (const ScriptError&) {
        throw;
      } catch (const std::exception& e) {
        fail(line.number, e.what());
      }
    }
  }

 private:
  [[noreturn]] void fail(int line, const std::string& reason) const { throw ScriptError(file_, line, reason); }

  static bool IsAction(const std::string& word) {
    return word == "set" || word == "click" || word == "select" || word == "file" || word == "cancel";
  }

  std::vector<std::string> split(const std::string& raw, int number) const {
    auto words = SplitScriptWords(raw, true);
    if (!words) fail(number, "a quote is not closed");
    return std::move(*words);
  }

  void expect(const Line& line, std::size_t least, std::size_t most, const char* form) const {
    if (line.words.size() < least || line.words.size() > most) fail(line.number, std::string("expected: ") + form);
  }

  int whole(const Line& line, const std::string& text, const char* what) const {
    errno = 0;
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end || errno == ERANGE || value < INT_MIN || value > INT_MAX)
      fail(line.number, std::string(what) + " must be a whole number, not \"" + text + "\"");
    return static_cast<int>(value);
  }

  // ${NAME} and ${NAME:-default} from the environment; "$$" is a dollar sign.
  std::string expand(const Line& line, const std::string& text) const {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] != '$' || i + 1 >= text.size() || (text[i + 1] != '{' && text[i + 1] != '$')) {
        out.push_back(text[i]);
        continue;
      }
      if (text[++i] == '$') {
        out.push_back('$');
        continue;
      }
      const std::size_t close = text.find('}', i);
      if (close == std::string::npos) fail(line.number, "a ${ is not closed in \"" + text + "\"");
      std::string name = text.substr(i + 1, close - i - 1), fallback;
      const std::size_t dash = name.find(":-");
      const bool hasFallback = dash != std::string::npos;
      if (hasFallback) {
        fallback = name.substr(dash + 2);
        name.resize(dash);
      }
      const char* value = std::getenv(name.c_str());
      if (value && *value)
        out += value;
      else if (hasFallback)
        out += fallback;
      else
        fail(line.number, "environment variable " + name + " is not set");
      i = close;
    }
    return out;
  }

  std::string path(const Line& line, const std::string& word) const {
    const std::string expanded = expand(line, word);
    if (expanded.empty()) fail(line.number, "an empty file name");
    const std::filesystem::path p(expanded);
    return p.has_root_directory() || baseDir_.empty() ? expanded : (std::filesystem::path(baseDir_) / p).string();
  }

  OptionsAction action(const Line& line) const {
    OptionsAction a;
    const std::string& what = line.words[0];
    if (what == "set") {
      expect(line, 3, 3, "set LABEL VALUE");
      a.kind = OptionsAction::Kind::Set;
      a.value = line.words[2];
    } else if (what == "click") {
      expect(line, 2, 2, "click LABEL");
      a.kind = OptionsAction::Kind::Click;
    } else if (what == "select") {
      expect(line, 3, 3, "select LABEL ROW");
      a.kind = OptionsAction::Kind::Select;
      a.row = whole(line, line.words[2], "a row");
    } else if (what == "file") {
      expect(line, 3, 3, "file LABEL NAME");
      a.kind = OptionsAction::Kind::File;
      a.value = path(line, line.words[2]);
    } else {
      expect(line, 1, 1, "cancel");
      a.kind = OptionsAction::Kind::Cancel;
    }
    if (line.words.size() > 1) a.label = line.words[1];
    return a;
  }

  void options(const Line& line, const std::vector<OptionsAction>& actions) {
    expect(line, 2, 2, "options NAME, then its set, click, select, file or cancel lines");
    session_.openOptions(line.words[1], actions);
  }

  void statement(const Line& line) {
    const std::string& what = line.words[0];
    const auto& w = line.words;
    if (what == "module") {
      expect(line, 3, 3, "module ALIAS PATH");
      session_.loadModule(w[1], path(line, w[2]));
    } else if (what == "master") {
      if (!(w.size() == 3 || (w.size() == 5 && w[3] == "as"))) fail(line.number, "expected: master ALIAS SERVER [as NAME]");
      session_.addMaster(w[1], w[2], w.size() == 5 ? w[4] : "");
    } else if (what == "command") {
      expect(line, 2, 2, "command \"LINE\" (quoted when it has blanks)");
      session_.issueCommand(w[1]);
    } else if (what == "load") {
      expect(line, 2, 2, "load SCENE");
      session_.loadScene(path(line, w[1]));
    } else if (what == "save") {
      expect(line, 2, 2, "save SCENE");
      session_.saveScene(path(line, w[1]));
    } else if (what == "frame") {
      expect(line, 2, 2, "frame N");
      session_.goToFrame(whole(line, w[1], "a frame"));
    } else if (what == "scene") {
      scene(line);
    } else if (what == "pictures") {
      pictures(line);
    } else if (what == "render") {
      expect(line, 2, 4, "render FIRST [LAST [STEP]]");
      const int first = whole(line, w[1], "the first frame");
      const int last = w.size() > 2 ? whole(line, w[2], "the last frame") : first;
      std::unique_ptr<SceneFrameRenderer> renderer;
      if (!prefix_.empty()) {
        SceneRenderOptions options = options_;
        if (width_ > 0) {
          options.width = width_;
          options.height = height_;
        }
        renderer = std::make_unique<SceneFrameRenderer>(surfaces_, options, prefix_);
      }
      session_.setRenderer(renderer.get());
      session_.render(first, last, w.size() > 3 ? whole(line, w[3], "the step") : 1);
      session_.setRenderer(nullptr);
    } else if (what == "remove") {
      expect(line, 2, 2, "remove NAME");
      session_.removeMaster(w[1]);
    } else if (what == "quit") {
      expect(line, 1, 1, "quit");
      session_.quit();
    } else if (IsAction(what)) {
      fail(line.number, what + " belongs under an options statement");
    } else {
      fail(line.number, "unknown statement " + what +
                            " (module, master, options, command, frame, load, save, scene, pictures, render, "
                            "remove, quit)");
    }
  }

  // scene FILE: a scene file as lwhost render takes it, built into the session.
  void scene(const Line& line) {
    expect(line, 2, 2, "scene FILE");
    if (sceneBuilt_) fail(line.number, "a session holds one scene file");
    if (session_.quitted()) fail(line.number, "scene after quit");
    const Network parsed = ReadNetworkFile(path(line, line.words[1]));
    if (!parsed.settings.scene) fail(line.number, parsed.file + " has no camera, objects or lights: it is not a scene");
    surfaces_ = BuildNetwork(session_.session(), parsed).surfaces;
    sceneBuilt_ = true;
    const SceneSettings& s = parsed.settings;
    if (s.width > 0) {
      options_.width = s.width;
      options_.height = s.height;
    }
    if (s.depth >= 0) options_.depth = s.depth;
    options_.threads = s.threads;
    for (int i = 0; i < 3; ++i) options_.backdrop[i] = s.backdrop[i];
  }

  // pictures PREFIX [--size WxH]
  void pictures(const Line& line) {
    const auto& w = line.words;
    if (w.size() != 2 && !(w.size() == 4 && w[2] == "--size")) fail(line.number, "expected: pictures PREFIX [--size WxH]");
    prefix_ = path(line, w[1]);
    if (w.size() == 4) {
      const std::size_t x = w[3].find('x');
      if (x == std::string::npos) fail(line.number, "--size expects WxH, not " + w[3]);
      width_ = whole(line, w[3].substr(0, x), "the width");
      height_ = whole(line, w[3].substr(x + 1), "the height");
      if (width_ < 1 || height_ < 1 || width_ > Raster::kMaxSide || height_ > Raster::kMaxSide)
        fail(line.number, "--size takes sides of 1 to " + std::to_string(Raster::kMaxSide));
    }
  }

  LayoutSession& session_;
  std::string file_, baseDir_;
  bool sceneBuilt_ = false;
  std::map<LWItemID, Surface> surfaces_;
  SceneRenderOptions options_;  // the scene file's
  std::string prefix_;
  int width_ = 0, height_ = 0;  // pictures --size, over the scene file's
};

}  // namespace

void RunSessionScript(LayoutSession& session, const std::string& text, const std::string& file,
                      const std::string& baseDir) {
  Runner(session, file, baseDir).run(text);
}

void RunSessionFile(LayoutSession& session, const std::string& path) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec)) throw ScriptError(path, 0, "is a folder, not a session script");
  std::ifstream in(path, std::ios::binary);
  if (!in) throw ScriptError(path, 0, std::string("cannot read the file: ") + std::strerror(errno));
  std::ostringstream text;
  text << in.rdbuf();
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  RunSessionScript(session, text.str(), path, folder.string());
}

}  // namespace lwhost
