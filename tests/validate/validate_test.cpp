// lwhost validate on a module whose nodes each have one fault: exactly those checks fail, the
// run goes on past a crash, and the summary and exit status say so. And the host's answers to
// bad input: a module file cut short is refused before the system loader maps it, a module
// named without a folder is a file, not a library to search for, and a string holding a NUL
// reads as what the plug-in can see of it.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "CliSupport.h"
#include "lwhost/BlockReader.h"
#include "lwhost/ModuleImage.h"

namespace {

using cli::Lwhost;
namespace fs = std::filesystem;

std::set<std::string> LinesStartingWith(const std::string& output, const std::string& word) {
  std::set<std::string> lines;
  std::istringstream in(output);
  for (std::string line; std::getline(in, line);)
    if (line.rfind(word, 0) == 0) lines.insert(line.substr(word.size()));
  return lines;
}

TEST(ValidateCommand, FailsExactlyTheFaultsOfEachServerAndKeepsGoing) {
#ifdef _WIN32
  GTEST_SKIP() << "without fork, lwhost validate runs the checks in its own process, so a crash ends the run";
#endif
  const CommandResult r = Lwhost({"validate", FAULTY_MODULE_PATH, "--level", "5", "--seed", "7"});
  EXPECT_EQ(r.status, 1) << r.output;
  std::set<std::string> failed;
  for (const std::string& line : LinesStartingWith(r.output, "FAIL  ")) failed.insert(line.substr(0, line.find(": ", line.find(": ") + 2)));
  EXPECT_EQ(failed, (std::set<std::string>{"NodeHandler faultyCreate: create and destroy",
                                           "NodeHandler faultyStore: save/load round trip (text)",
                                           "NodeHandler faultyStore: save/load round trip (binary)",
                                           "NodeHandler faultyGlobal: without \"LW Time Info\""}))
      << r.output;
  // A signal, or a sanitizer's report and exit.
  EXPECT_NE(r.output.find("faultyCreate: create and destroy: the process "), std::string::npos) << r.output;
  // After the crash, the servers that follow it are still checked in full.
  const std::string passed = "\n" + r.output;
  for (const char* check : {"activation", "copy", "load damaged data", "as Modeler", "as ScreamerNet",
                            "NaN, infinite and huge inputs", "evaluation on all threads"})
    EXPECT_NE(passed.find("\nPASS  NodeHandler faultless: " + std::string(check)), std::string::npos) << check;
  for (const std::string& skipped : LinesStartingWith(r.output, "SKIP  "))
    EXPECT_TRUE(skipped.rfind("NodeHandler faultyCreate:", 0) == 0 || skipped.find(": panel: no interface server") != std::string::npos)
        << skipped;
  EXPECT_NE(r.output.find(" passed, 4 failed"), std::string::npos) << r.output;
}

TEST(ValidateCommand, NarrowsToOneServerAndRefusesBadOptions) {
  CommandResult r = Lwhost({"validate", FAULTY_MODULE_PATH, "--server", "faultless", "--level", "2"});
  EXPECT_EQ(r.status, 0) << r.output;
  EXPECT_EQ(r.output.find("faultyStore"), std::string::npos) << r.output;
  EXPECT_NE(r.output.find("save/load round trip (binary)"), std::string::npos) << r.output;
  EXPECT_NE(r.output.find(" passed, 0 failed\n"), std::string::npos) << r.output;

  r = Lwhost({"validate", FAULTY_MODULE_PATH, "--server", "nobody"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.output.find("FAIL  " FAULTY_MODULE_PATH ": server nobody: the module has no server of that name"),
            std::string::npos)
      << r.output;

  for (const char* level : {"0", "6", "x", "-1"}) {
    r = Lwhost({"validate", FAULTY_MODULE_PATH, "--level", level});
    EXPECT_EQ(r.status, 2) << level;
    EXPECT_NE(r.output.find("--level expects a whole number from 1 to 5"), std::string::npos) << r.output;
  }
  r = Lwhost({"validate", "/nonexistent/x.p"});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.output.find("FAIL  /nonexistent/x.p: load: /nonexistent/x.p: no such file"), std::string::npos) << r.output;
}

TEST(BadInput, ModuleCutShortIsRefusedWithOneLineByEveryCommand) {
  const std::string cut = cli::OutputPath("cut.p");
  std::ofstream(cut, std::ios::binary) << cli::ReadFile(testpaths::kVorn).substr(0, 4096);
  const std::string network = cli::OutputPath("cut.net");
  std::ofstream(network) << "module m " << cut << "\nnode n = m SimpleColourCorrector\noutput n.Colour\n";
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"servers", cut}, {"panel", cut, "SimpleColourCorrector", "-o", cli::OutputPath("cut.png")},
        {"render", network, "-o", cli::OutputPath("cut.png")}}) {
    const CommandResult r = Lwhost(command);
    EXPECT_EQ(r.status, 1) << command[0] << ": " << r.output;
#ifdef _WIN32
    EXPECT_NE(r.output.find(cut + ": truncated PE file (4096 bytes, but section "), std::string::npos) << r.output;
#else
    EXPECT_NE(r.output.find(cut + ": truncated ELF file (4096 bytes, but segment "), std::string::npos) << r.output;
#endif
    EXPECT_EQ(std::count(r.output.begin(), r.output.end(), '\n'), 1) << r.output;
  }
}

TEST(BadInput, PeSectionsPastTheEndAreFound) {
  std::vector<unsigned char> image(0x400, 0);
  image[0] = 'M', image[1] = 'Z', image[0x3C] = 0x40;
  std::memcpy(&image[0x40], "PE\0\0", 4);
  image[0x46] = 1;                                   // one section, no optional header
  image[0x58 + 17] = 0x02, image[0x58 + 21] = 0x02;  // 0x200 bytes from offset 0x200
  EXPECT_EQ(lwhost::CheckPeImage(image.data(), image.size()), "");
  EXPECT_EQ(lwhost::CheckPeImage(image.data(), 0x300),
            "truncated PE file (768 bytes, but section 0 ends at byte 1024)");
  EXPECT_EQ(lwhost::CheckPeImage(image.data(), 0x60), "truncated PE file (the section table lies past its end)");
  EXPECT_EQ(lwhost::CheckElfImage(image.data(), image.size()), "");  // not ELF: the loader's to judge
}

TEST(BadInput, ModulePathsWithoutAFolderAreFilesInTheCurrentOrNetworkFolder) {
  const fs::path dir = fs::path(CLI_TEST_OUTPUT_DIR) / "here";
  fs::create_directories(dir);
  fs::remove(dir / "vorn.p");  // mingw's copy_file refuses to overwrite, whatever the options
  fs::copy_file(testpaths::kVorn, dir / "vorn.p");
  std::ofstream(dir / "net.txt") << "module vorn ./vorn.p\nnode c = Color 1 0 0\nnode cc = vorn SimpleColourCorrector\n"
                                    "connect c.Color -> cc.Colour\noutput cc.Colour\n";
  // The folder lwhost starts in is ours while it runs.
  const fs::path before = fs::current_path();
  for (const auto& [in, command, says] :
       {std::tuple<fs::path, std::vector<std::string>, const char*>{dir, {"servers", "vorn.p"}, "SimpleColourCorrector"},
        {dir, {"render", "net.txt", "-o", "out.png", "--size", "8x8"}, "wrote "},
        {dir.root_path(), {"render", (dir / "net.txt").string(), "-o", (dir / "out2.png").string(), "--size", "8x8"}, "wrote "}}) {
    fs::current_path(in);
    const CommandResult r = Lwhost(command);
    fs::current_path(before);
    EXPECT_EQ(r.status, 0) << r.output;
    EXPECT_NE(r.output.find(says), std::string::npos) << r.output;
  }
}

TEST(BadInput, TextStringWithANulReadsAsTheStringBeforeIt) {
  lwhost::BlockReader reader(lwhost::IOMode::Ascii, std::string("a\0b c\n", 6));
  const LWLoadState* state = reader.state();
  char buffer[16];
  EXPECT_EQ(state->readStr(state->readData, buffer, sizeof buffer), 1);
  EXPECT_STREQ(buffer, "a");
  EXPECT_EQ(state->readStr(state->readData, buffer, sizeof buffer), 1);
  EXPECT_STREQ(buffer, "c");
}

}  // namespace
