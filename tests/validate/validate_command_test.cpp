// lwhost validate on a module whose nodes each have one fault: exactly those checks fail, the
// run goes on past a crash, and the summary and exit status say so.
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "CliSupport.h"

namespace {

using cli::Lwhost;

std::set<std::string> LinesStartingWith(const std::string& output, const std::string& word) {
  std::set<std::string> lines;
  std::istringstream in(output);
  for (std::string line; std::getline(in, line);)
    if (line.rfind(word, 0) == 0) lines.insert(line.substr(word.size()));
  return lines;
}

std::string Subject(const std::string& line) { return line.substr(0, line.find(':', line.find(' '))); }

TEST(ValidateCommand, FailsExactlyTheFaultsOfEachServerAndKeepsGoing) {
  const CommandResult r = Lwhost({"validate", FAULTY_MODULE_PATH, "--level", "5", "--seed", "7"});
  EXPECT_EQ(r.status, 1) << r.output;
  std::set<std::string> failed;
  for (const std::string& line : LinesStartingWith(r.output, "FAIL  ")) failed.insert(line.substr(0, line.find(": ", line.find(": ") + 2)));
  EXPECT_EQ(failed, (std::set<std::string>{
                        "NodeHandler faultyCreate: create and destroy",
                        "NodeHandler faultyStore: save/load round trip (text)",
                        "NodeHandler faultyStore: save/load round trip (binary)",
                        "NodeHandler faultyGlobal: without \"LW Time Info\"",
                    }))
      << r.output;
  // A signal, or a sanitizer's report and exit.
  EXPECT_NE(r.output.find("faultyCreate: create and destroy: the process "), std::string::npos) << r.output;
  // After the crash, the servers that follow it are still checked in full.
  const std::string passed = "\n" + r.output;
  for (const char* check : {"activation", "copy", "load damaged data", "as Modeler", "as ScreamerNet",
                            "NaN, infinite and huge inputs", "evaluation on all threads"})
    EXPECT_NE(passed.find("\nPASS  NodeHandler faultless: " + std::string(check)), std::string::npos) << check;
  for (const std::string& skipped : LinesStartingWith(r.output, "SKIP  "))
    EXPECT_TRUE(Subject(skipped) == "NodeHandler faultyCreate" || skipped.find(": panel: no interface server") != std::string::npos)
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

}  // namespace
