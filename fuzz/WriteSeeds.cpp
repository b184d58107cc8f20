// Seed corpora for the fuzzers, made from what the module's own servers save: every server in
// both modes, fresh and after a copy, as the saved-data fuzzer reads it (server byte, mode
// byte, data) and as the block reader fuzzer reads it (mode, a script of reads, data).
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "FuzzModule.h"

namespace {

void Write(const std::filesystem::path& dir, const std::string& name, const std::string& bytes) {
  std::filesystem::create_directories(dir);
  std::ofstream(dir / name, std::ios::binary) << bytes;
}

// findBlk, readI4, readDP x3, readStr 15, endBlk: what a typical plug-in's load does.
const std::string kReads = std::string("\x07", 1) + "\x00\x16\x3b\xfc\x01\x00\x01";

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: write_seeds CORPUS_DIR\n");
    return 2;
  }
  const std::filesystem::path root(argv[1]);
  lwhost::Session session;
  const lwhost::ModuleFile& module = session.load(fuzz::ModulePath());
  const auto servers = fuzz::InstanceServers(module);
  int written = 0;
  for (std::size_t i = 0; i < servers.size(); ++i) {
    if (servers[i].className != "NodeHandler") continue;
    lwhost::PluginNode& node = session.nodes().addPluginNode(module, servers[i].name);
    for (lwhost::IOMode mode : {lwhost::IOMode::Ascii, lwhost::IOMode::Binary}) {
      const std::string data = node.instance().save(mode);
      const char modeByte = mode == lwhost::IOMode::Binary ? 1 : 0;
      const std::string tag = servers[i].name + (modeByte ? ".bin" : ".txt");
      Write(root / "saved_data", tag, std::string(1, static_cast<char>(i)) + modeByte + data);
      Write(root / "block_reader", tag, std::string(1, modeByte) + kReads + data);
      written += 2;
    }
  }
  std::printf("wrote %d seeds for %zu servers of %s\n", written, servers.size(), module.path().c_str());
  return 0;
}
