#pragma once

// Running the real lwhost binary from tests, where its files go, and reading its pictures back.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "lwhost/Raster.h"
#include "support/ModulePaths.h"
#include "support/RunCommand.h"

namespace cli {

// Runs lwhost with these words (each one argument), stdout and stderr together; `environment`
// holds "NAME=value" entries, e.g. "VORN_MODULE=/x/vorn.p".
inline CommandResult Lwhost(std::vector<std::string> args, const std::vector<std::string>& environment = {}) {
  args.insert(args.begin(), LWHOST_PATH);
  return RunCommand(args, environment);
}

// A fresh path in the suite's output folder: a file left there by an earlier run is removed.
inline std::string OutputPath(const std::string& name) {
  const std::filesystem::path dir(CLI_TEST_OUTPUT_DIR);
  std::filesystem::create_directories(dir);
  std::filesystem::remove(dir / name);
  return (dir / name).string();
}

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A small PNG as lwhost writes it: 8-bit RGB, one IDAT chunk holding one stored deflate block,
// filter 0 on every row (the encoder's own tests hold it to that). Reading past it throws.
struct Picture {
  std::string png;

  lwhost::RGB at(std::size_t x, std::size_t y) const {
    auto byte = [&](std::size_t i) { return std::uint8_t(png.at(i)); };
    const std::size_t width = std::size_t(byte(18)) << 8 | byte(19);  // from IHDR
    // Past the chunk type, the zlib header, the block header and the row's filter byte.
    const std::size_t p = png.find("IDAT") + 4 + 2 + 5 + y * (3 * width + 1) + 1 + 3 * x;
    return {byte(p), byte(p + 1), byte(p + 2)};
  }
};

}  // namespace cli
