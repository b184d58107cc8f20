// lwhost render: renders a node network onto a sphere, or a scene file's objects, lights and
// camera, to PNG files.
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "lwhost/NetworkFile.h"
#include "lwhost/NetworkRenderer.h"
#include "lwhost/PngFile.h"
#include "lwhost/SceneRenderer.h"
#include "lwhost/Session.h"

namespace lwhost::tools {

namespace {

struct RenderRequest {
  std::string network, output;
  RenderOptions options;
  bool hasSize = false, hasFrames = false;
  LWFrame first = 0, last = 0;
  int threads = 0;
};

// A whole number filling `text` from `begin` to `end` (npos: the end of the text).
bool WholeNumber(const std::string& text, std::size_t begin, std::size_t end, int* value) {
  const std::string part = text.substr(begin, end == std::string::npos ? std::string::npos : end - begin);
  if (part.empty() || part[0] == ' ' || part[0] == '+') return false;
  errno = 0;
  char* stop = nullptr;
  const long v = std::strtol(part.c_str(), &stop, 10);
  if (*stop != '\0' || errno == ERANGE || v < INT_MIN || v > INT_MAX) return false;
  *value = static_cast<int>(v);
  return true;
}

void ParseSize(const std::string& text, RenderOptions& options) {
  const std::size_t x = text.find('x');
  int width = 0, height = 0;
  if (x == std::string::npos || !WholeNumber(text, 0, x, &width) ||
      !WholeNumber(text, x + 1, std::string::npos, &height) || width < 1 || height < 1 || width > Raster::kMaxSide ||
      height > Raster::kMaxSide)
    throw UsageError("--size expects WxH with each side 1 to " + std::to_string(Raster::kMaxSide) + ", not " + text);
  options.width = width;
  options.height = height;
}

void ParseFrames(const std::string& text, RenderRequest& r) {
  const std::size_t dash = text.find('-', 1);
  if (dash == std::string::npos || !WholeNumber(text, 0, dash, &r.first) ||
      !WholeNumber(text, dash + 1, std::string::npos, &r.last) || r.last < r.first)
    throw UsageError("--frames expects A-B, whole numbers with A <= B, not " + text);
  r.hasFrames = true;
}

RenderRequest ParseArguments(const std::vector<std::string>& args) {
  RenderRequest r;
  Arguments in("render", args);
  while (!in.done()) {
    if (!in.atOption()) {
      const std::string word = in.next();
      if (!r.network.empty()) in.unknown(word);
      r.network = word;
      continue;
    }
    const std::string option = in.next();
    if (option == "-o" || option == "--output") {
      r.output = in.valueOf(option);
    } else if (option == "--size") {
      ParseSize(in.valueOf(option), r.options);
      r.hasSize = true;
    } else if (option == "--frame") {
      const std::string text = in.valueOf(option);
      if (!WholeNumber(text, 0, std::string::npos, &r.options.frame))
        throw UsageError("--frame expects a whole number, not " + text);
      r.first = r.last = r.options.frame;
      r.hasFrames = true;
    } else if (option == "--frames") {
      ParseFrames(in.valueOf(option), r);
    } else if (option == "--threads") {
      const std::string text = in.valueOf(option);
      if (!WholeNumber(text, 0, std::string::npos, &r.threads) || r.threads < 1 ||
          r.threads > SceneRenderer::kMaxThreads)
        throw UsageError("--threads expects a whole number 1 to " + std::to_string(SceneRenderer::kMaxThreads) +
                         ", not " + text);
    } else {
      in.unknown(option);
    }
  }
  if (r.network.empty()) in.missing("a NETWORK or SCENE file");
  if (r.output.empty()) in.missing("-o FILE.png");
  return r;
}

// The file name of one frame: the output's one %d (or %0Nd) replaced by the frame number.
std::string FrameName(const std::string& pattern, LWFrame frame) {
  const std::size_t percent = pattern.find('%');
  if (percent == std::string::npos) return pattern;
  std::size_t at = percent + 1;
  int width = 0;
  while (at < pattern.size() && pattern[at] >= '0' && pattern[at] <= '9') width = width * 10 + (pattern[at++] - '0');
  std::string number = std::to_string(frame < 0 ? -static_cast<long>(frame) : frame);
  if (static_cast<int>(number.size()) < width) number.insert(0, width - number.size(), '0');
  if (frame < 0) number.insert(0, "-");
  return pattern.substr(0, percent) + number + pattern.substr(at + 1);
}

void CheckPattern(const std::string& pattern, bool range) {
  const std::size_t percent = pattern.find('%');
  bool valid = percent != std::string::npos;
  if (valid) {
    std::size_t at = percent + 1;
    while (at < pattern.size() && at - percent < 4 && pattern[at] >= '0' && pattern[at] <= '9') ++at;
    valid = at < pattern.size() && pattern[at] == 'd' && pattern.find('%', at) == std::string::npos;
  }
  if (range && !valid)
    throw UsageError("a frame range needs an output name with one %d or %0Nd for the frame, e.g. out_%04d.png");
  if (!range && percent != std::string::npos && !valid)
    throw UsageError("the output name may hold one %d or %0Nd for the frame, not " + pattern);
}

// A progress line on a terminal, for renders that take longer than a second.
class ProgressLine {
 public:
  ProgressLine(LWFrame first, LWFrame last) : first_(first), last_(last), start_(Clock::now()), tty_(isatty(2)) {}
  ~ProgressLine() { clear(); }
  // Takes the line away, so that other output starts on a clean line.
  void clear() {
    if (shown_) std::fprintf(stderr, "\r%*s\r", kWidth, "");
    shown_ = false;
  }
  void operator()(double done) {
    const double elapsed = std::chrono::duration<double>(Clock::now() - start_).count();
    if (!tty_ || elapsed < 1.0 || done <= 0.0) return;
    const double frames = static_cast<double>(last_) - first_ + 1.0;
    const auto frame = static_cast<long>(first_ + std::min(frames - 1.0, done * frames));
    const double left = elapsed * (1.0 - done) / done;
    std::fprintf(stderr, "\r%-*.*s", kWidth, kWidth,
                 ("frame " + std::to_string(frame) + " (" + std::to_string(first_) + "-" + std::to_string(last_) +
                  ")  " + std::to_string(static_cast<int>(done * 100.0)) + "%  " +
                  std::to_string(static_cast<long>(left + 0.5)) + " s left")
                     .c_str());
    shown_ = true;
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr int kWidth = 60;
  LWFrame first_, last_;
  Clock::time_point start_;
  bool tty_, shown_ = false;
};

int RenderNetwork(const RenderRequest& r, const Network& network) {
  if (r.first != r.last) throw UsageError("--frames renders scenes; a network renders one frame (--frame N)");
  if (r.threads > 0) throw UsageError("--threads renders scenes; a network renders on one thread");
  CheckPattern(r.output, false);
  const std::string path = FrameName(r.output, r.options.frame);
  auto file = std::make_unique<PngFile>(path, r.options.width, r.options.height);
  Session session;
  const BuiltNetwork built = BuildNetwork(session, network);
  try {
    NetworkRenderer renderer(session.nodes(), session.scene(), *built.output);
    file->writeImage(renderer.render(r.options));
    file->finish();
  } catch (const RenderError& e) {
    throw CommandError(built.withFileNames(e.what()));
  }
  std::printf("wrote %s (%dx%d)\n", path.c_str(), r.options.width, r.options.height);
  ReportPluginErrors(session.host());
  return 0;
}

int RenderScene(const RenderRequest& r, const Network& network) {
  const SceneSettings& s = network.settings;
  SceneRenderOptions options;
  if (r.hasSize) {
    options.width = r.options.width;
    options.height = r.options.height;
  } else if (s.width > 0) {
    options.width = s.width;
    options.height = s.height;
  }
  options.first = r.hasFrames ? r.first : s.first;
  options.last = r.hasFrames ? r.last : s.last;
  options.threads = r.threads > 0 ? r.threads : s.threads;
  if (s.depth >= 0) options.depth = s.depth;
  for (int i = 0; i < 3; ++i) options.backdrop[i] = s.backdrop[i];
  const bool range = options.first != options.last;
  CheckPattern(r.output, range);

  // The first file is opened before anything loads, so a bad path fails at once.
  std::unique_ptr<PngFile> file =
      std::make_unique<PngFile>(FrameName(r.output, options.first), options.width, options.height);
  Session session;
  const BuiltNetwork built = BuildNetwork(session, network);
  ProgressLine progress(options.first, options.last);
  try {
    SceneRenderer renderer(session.nodes(), session.scene(), built.surfaces);
    renderer.render(
        options,
        [&](LWFrame frame, const Raster& image) {
          try {
            if (!file) file = std::make_unique<PngFile>(FrameName(r.output, frame), image.width(), image.height());
            file->writeImage(image);
            file->finish();
          } catch (const PngFileError& e) {
            throw CommandError(range ? "frame " + std::to_string(frame) + ": " + e.what() : e.what());
          }
          progress.clear();
          std::printf("wrote %s (%dx%d)\n", file->path().c_str(), image.width(), image.height());
          std::fflush(stdout);
          file.reset();
        },
        [&](double done) { progress(done); });
  } catch (const RenderError& e) {
    progress.clear();
    throw CommandError(built.withFileNames(e.what()));
  }
  ReportPluginErrors(session.host());
  return 0;
}

}  // namespace

int RenderCommand(const std::vector<std::string>& args) {
  const RenderRequest r = ParseArguments(args);
  const Network network = ReadNetworkFile(r.network);
  try {
    return network.settings.scene ? RenderScene(r, network) : RenderNetwork(r, network);
  } catch (const PngFileError& e) {
    throw CommandError(e.what());
  }
}

}  // namespace lwhost::tools
