// lwhost: a headless LightWave host for plug-in modules.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "Commands.h"
#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/NetworkFile.h"
#include "lwhost/Raster.h"
#include "lwhost/ServerTable.h"

namespace lwhost::tools {

namespace {

const char kUsage[] =
    "usage: lwhost servers MODULE\n"
    "         list the module's server records\n"
    "       lwhost panel MODULE SERVER -o FILE.png [--set \"Label=value\"]... [--modeler] [--version 9.6]\n"
    "         draw the panel of a node or master server, after typing in the values given\n"
    "       lwhost render NETWORK -o FILE.png [--size WxH] [--frame N]\n"
    "         render a node network file onto a sphere (format: host/RENDERING.md)\n"
    "       lwhost render SCENE -o FILE.png [--size WxH] [--frame N | --frames A-B] [--threads N]\n"
    "         ray-trace a scene file's objects and lights; a range writes one file a frame (out_%04d.png)\n";

// Messages may quote plug-in texts and file contents: line breaks and other control bytes
// become blanks, so that an error stays one readable line.
std::string OneLine(std::string text) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < 32 || c == 127) c = ' ';
  return text;
}

}  // namespace

int ServersCommand(const std::vector<std::string>& args) {
  Arguments in("servers", args);
  if (in.done()) in.missing("a MODULE file");
  const std::string path = in.next();
  if (!in.done()) in.unknown(in.next());
  Host host;
  ModuleFile module(path);
  std::fputs(FormatServerTable(module).c_str(), stdout);
  return 0;
}

void WritePicture(const Raster& picture, const std::string& path) {
  std::string error;
  if (!picture.writePng(path, &error)) throw CommandError(error);
  std::printf("wrote %s (%dx%d)\n", path.c_str(), picture.width(), picture.height());
}

void ReportPluginErrors(Host& host) {
  for (const Message& m : host.messages().errors())
    std::fprintf(stderr, "lwhost: a plug-in reported: %s\n",
                 OneLine(m.first + (m.hasSecond && !m.second.empty() ? " " + m.second : "")).c_str());
}

}  // namespace lwhost::tools

int main(int argc, char** argv) {
  using namespace lwhost::tools;
  if (argc < 2 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
    std::fputs(kUsage, argc < 2 ? stderr : stdout);
    return argc < 2 ? 2 : 0;
  }
  const std::string command = argv[1];
  const std::vector<std::string> args(argv + 2, argv + argc);
  try {
    if (command == "servers") return ServersCommand(args);
    if (command == "panel") return PanelCommand(args);
    if (command == "render") return RenderCommand(args);
    throw UsageError("unknown command " + command + " (servers, panel or render)");
  } catch (const UsageError& e) {
    std::fprintf(stderr, "lwhost: %s; see lwhost --help\n", OneLine(e.what()).c_str());
    return 2;
  } catch (const lwhost::NetworkError& e) {
    // Compiler style, so that editors can jump to the line.
    std::fprintf(stderr, "%s\n", OneLine(e.what()).c_str());
    return 1;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "lwhost: %s\n", OneLine(e.what()).c_str());
    return 1;
  } catch (...) {
    std::fprintf(stderr, "lwhost: an unknown failure\n");
    return 1;
  }
}
