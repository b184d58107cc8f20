// lwhost render with scene files: an unwritable output fails before the render, frame ranges
// write numbered files and stop at a failing frame without leaving part of it, and the PNG
// written row by row decodes to the rendered rows.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "cli/CliSupport.h"
#include "lwhost/Raster.h"

namespace {

std::uint32_t Be32(const std::string& s, std::size_t at) {
  return std::uint32_t(std::uint8_t(s.at(at))) << 24 | std::uint32_t(std::uint8_t(s.at(at + 1))) << 16 |
         std::uint32_t(std::uint8_t(s.at(at + 2))) << 8 | std::uint8_t(s.at(at + 3));
}

// The filtered rows of a PNG made of stored deflate blocks, checking every length on the way.
std::string StoredRows(const std::string& png) {
  std::string z;
  for (std::size_t at = 8; at + 12 <= png.size();) {
    const std::uint32_t length = Be32(png, at);
    if (png.compare(at + 4, 4, "IDAT") == 0) z += png.substr(at + 8, length);
    at += 12 + length;
  }
  std::string rows;
  for (std::size_t at = 2; at + 5 <= z.size();) {
    const std::size_t n = std::uint8_t(z[at + 1]) | std::uint8_t(z[at + 2]) << 8;
    EXPECT_EQ(n ^ 0xFFFF, std::size_t(std::uint8_t(z[at + 3]) | std::uint8_t(z[at + 4]) << 8));
    rows += z.substr(at + 5, n);
    if (z[at] & 1) break;
    at += 5 + n;
  }
  return rows;
}

std::string WriteScene(const std::string& name, const std::string& body) {
  const std::string path = cli::OutputPath(name);
  std::ofstream(path) << "module probe \"" << LIGHT_PROBE_PATH << "\"\nnode p = probe LightProbe\n" << body;
  return path;
}

TEST(RenderFiles, UnwritableOutputsFailBeforeTheRender) {
  // Rendered in full this would take minutes: two facing mirrors at 8192 x 8192, depth 32.
  const std::string scene = WriteScene("slow.scene",
                                       "node mirror = Material reflection 1 1 1\ndepth 32\nsize 8192x8192\n"
                                       "camera cam position 0 1 0 target 0 1 1\n"
                                       "object a plane scale 99 1 99 surface mirror.Material\n"
                                       "object b plane position 0 2 0 scale 99 1 99 surface mirror.Material\n");
  const std::string missing = cli::OutputPath("no-such-folder") + "/x.png";
  for (const auto& [out, why] : {std::pair<std::string, std::string>{missing, "No such file or directory"},
                                 {"/dev/full", "No space left on device"}}) {
    const CommandResult run = RunCommand("timeout 20 " + cli::ShellQuoted(LWHOST_PATH) + " render " +
                                         cli::ShellQuoted(scene) + " -o " + cli::ShellQuoted(out));
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_EQ(run.output, "lwhost: cannot write " + out + ": " + why + "\n");
  }
}

TEST(RenderFiles, FrameRangesWriteNumberedFilesAndStopAtAFailingFrame) {
  const std::string scene = WriteScene("frames.scene",
                                       "camera cam position 0 5 0 target 0 0 0\n"
                                       "light l point position 0 2 0\n"
                                       "object floor plane scale 9 1 9 surface p.Lambert emit\n");
  const std::string pattern = cli::OutputPath("f_%04d.png");
  const std::string dir = std::filesystem::path(pattern).parent_path().string() + "/";
  for (const char* name : {"f_0011.png", "f_0012.png", "f_0013.png", "f_0013.png.partial"}) cli::OutputPath(name);

  const CommandResult run = cli::Lwhost({"render", scene, "-o", pattern, "--frames", "11-14", "--size", "300x200"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output, "wrote " + dir + "f_0011.png (300x200)\nwrote " + dir +
                            "f_0012.png (300x200)\nlwhost: frame 13: node \"p\" failed: unlucky frame\n");
  const std::string png = cli::ReadFile(dir + "f_0012.png");
  EXPECT_FALSE(std::filesystem::exists(dir + "f_0013.png"));
  EXPECT_FALSE(std::filesystem::exists(dir + "f_0013.png.partial"));

  // Failing on the first frame, whose file was opened before the render: nothing is left.
  EXPECT_EQ(cli::Lwhost({"render", scene, "-o", pattern, "--frames", "13-14"}).status, 1);
  EXPECT_FALSE(std::filesystem::exists(dir + "f_0013.png.partial"));

  // Several blocks of rows, each row a filter byte and 300 pixels; straight under the light the
  // floor is lit fully.
  const std::string rows = StoredRows(png);
  ASSERT_EQ(rows.size(), 200u * (1 + 300 * 3));
  const std::size_t centre = 100 * 901 + 1 + 150 * 3;
  EXPECT_EQ(std::uint8_t(rows[centre]), 255);
  EXPECT_EQ(rows[100 * 901], 0);

  EXPECT_EQ(cli::Lwhost({"render", scene, "-o", cli::OutputPath("plain.png"), "--frames", "1-2"}).status, 2);
}

}  // namespace
