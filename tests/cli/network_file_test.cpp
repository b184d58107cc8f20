// Network files as read, before any module is loaded: where module paths lead, and how
// connector names with blanks and comments are taken apart.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "lwhost/NetworkFile.h"

namespace {

using lwhost::NetworkError;
using lwhost::ParseNetwork;

lwhost::VariableLookup Variables(const std::map<std::string, std::string>& values) {
  return [values](const std::string& name) -> const char* {
    auto it = values.find(name);
    return it == values.end() ? nullptr : it->second.c_str();
  };
}

TEST(NetworkFile, ModulePathsExpandVariablesAndFollowTheFile) {
  const std::string text =
      "module a ${LIB:-../build}/a.p   # relative: from the file's folder\n"
      "module b $ROOT/b.p\n"
      "module c \"/opt/with blank/c.p\"\n"
      "module d cost$$/d.p\n"
      "node n = Color 0 0 0\n"
      "output n.Color\n";
  auto paths = [&](const std::map<std::string, std::string>& env) {
    const lwhost::Network n = ParseNetwork(text, "nets/x.net", "/work/nets", Variables(env));
    std::vector<std::string> out;
    for (const auto& s : n.statements)
      if (auto* m = std::get_if<lwhost::ModuleStatement>(&s.what)) out.push_back(m->alias + "=" + m->path);
    return out;
  };
  EXPECT_EQ(paths({{"ROOT", "/srv"}}), (std::vector<std::string>{"a=/work/build/a.p", "b=/srv/b.p",
                                                                 "c=/opt/with blank/c.p", "d=/work/nets/cost$/d.p"}));
  // A set variable wins over the default, an empty one does not.
  EXPECT_EQ(paths({{"ROOT", "/srv"}, {"LIB", "/lib"}})[0], "a=/lib/a.p");
  EXPECT_EQ(paths({{"ROOT", "/srv"}, {"LIB", ""}})[0], "a=/work/build/a.p");
  try {
    paths({});
    FAIL() << "an unset variable without a default was accepted";
  } catch (const NetworkError& e) {
    EXPECT_STREQ(e.what(), "nets/x.net:2: environment variable ROOT is not set");
    EXPECT_EQ(e.line(), 2);
  }
}

TEST(NetworkFile, ConnectorNamesKeepTheirBlanksAndCommentsEndLines) {
  const lwhost::Network n = ParseNetwork(
      "module m /m.p\n"
      "\n"
      "node t = m vornTimeInfo\n"
      "node c = m SimpleColourCorrector   # the corrector\n"
      "connect t.Frames per Second -> c.\"Hue\"\n"
      "connect t.\"Time\"->c.Brightness\n"
      "set c \"Colour\" 255 \"#80\" 0  # a quoted # is no comment\n"
      "output c.Colour # seen\n",
      "x.net", "", Variables({}));
  std::vector<std::string> seen;
  for (const auto& s : n.statements) {
    if (auto* c = std::get_if<lwhost::ConnectStatement>(&s.what))
      seen.push_back(std::to_string(s.line) + ": " + c->fromNode + "/" + c->output + " -> " + c->toNode + "/" +
                     c->input);
    if (auto* v = std::get_if<lwhost::SetStatement>(&s.what))
      seen.push_back(std::to_string(s.line) + ": " + v->node + "/" + v->label + " = " + v->value);
    if (auto* o = std::get_if<lwhost::OutputStatement>(&s.what))
      seen.push_back(std::to_string(s.line) + ": " + o->node + "/" + o->output);
  }
  EXPECT_EQ(seen, (std::vector<std::string>{"5: t/Frames per Second -> c/Hue", "6: t/Time -> c/Brightness",
                                            "7: c/Colour = 255 #80 0", "8: c/Colour"}));
}

}  // namespace
