// lwhost render: renders a node network file onto a sphere.
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string>
#include <vector>

#include "Commands.h"
#include "lwhost/NetworkFile.h"
#include "lwhost/NetworkRenderer.h"
#include "lwhost/Session.h"

namespace lwhost::tools {

namespace {

struct RenderRequest {
  std::string network, output;
  RenderOptions options;
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

void ParseFrame(const std::string& text, RenderOptions& options) {
  if (!WholeNumber(text, 0, std::string::npos, &options.frame))
    throw UsageError("--frame expects a whole number, not " + text);
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
    if (option == "-o" || option == "--output")
      r.output = in.valueOf(option);
    else if (option == "--size")
      ParseSize(in.valueOf(option), r.options);
    else if (option == "--frame")
      ParseFrame(in.valueOf(option), r.options);
    else
      in.unknown(option);
  }
  if (r.network.empty()) in.missing("a NETWORK file");
  if (r.output.empty()) in.missing("-o FILE.png");
  return r;
}

}  // namespace

int RenderCommand(const std::vector<std::string>& args) {
  const RenderRequest r = ParseArguments(args);
  const Network network = ReadNetworkFile(r.network);
  Session session;
  const BuiltNetwork built = BuildNetwork(session, network);
  try {
    NetworkRenderer renderer(session.nodes(), session.scene(), *built.output);
    WritePicture(renderer.render(r.options), r.output);
  } catch (const RenderError& e) {
    throw CommandError(built.withFileNames(e.what()));
  }
  ReportPluginErrors(session.host());
  return 0;
}

}  // namespace lwhost::tools
