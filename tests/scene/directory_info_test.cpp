// "Directory Info": defaults, configuration and the strings handed out.
#include <cstdlib>
#include <optional>
#include <string>

#include "SceneTestSupport.h"

namespace {

TEST_F(SceneTest, ConfiguredPathsNeverEndInASeparatorAndStayPut) {
  LWDirInfoFunc* dir = dirInfo();
  lwhost::Directories& dirs = scene.directories();
  // A root stays a root, and what is under it gets exactly one separator.
  const char* const contents[][3] = {
      {"/projects/show///", "/projects/show", "/projects/show/Objects"}, {"/", "/", "/Objects"}, {"C:\\", "C:\\", "C:\\Objects"},
      {"D:\\Show\\", "D:\\Show", "D:\\Show\\Objects"}};
  for (const auto& c : contents) {
    dirs.setContentDirectory(c[0]);
    EXPECT_STREQ(dir(LWFTYPE_CONTENT), c[1]);
    EXPECT_STREQ(dir(LWFTYPE_OBJECT), c[2]);
  }
  dirs.setContentDirectory("/projects/show");
  EXPECT_STREQ(dir(LWFTYPE_INSTALL), "/projects/show");
  dirs.setSettingsDirectory("/etc/lwhost/");
  EXPECT_STREQ(dir(LWFTYPE_SETTING), "/etc/lwhost");
  dirs.setDirectory("Scripts", "/opt/scripts");  // keys beyond LightWave's list are allowed
  EXPECT_STREQ(dir("Scripts"), "/opt/scripts");
  EXPECT_EQ(dir("objects"), nullptr);  // keys are case-sensitive
  EXPECT_EQ(dir(nullptr), nullptr);
  dirs.setDirectory(LWFTYPE_RADIOSITY, "/radiosity");
  dirs.unsetDirectory(LWFTYPE_RADIOSITY);  // as LightWave leaves some keys without a path
  EXPECT_EQ(dir(LWFTYPE_RADIOSITY), nullptr);
  dirs.resetDirectory(LWFTYPE_RADIOSITY);
  EXPECT_STREQ(dir(LWFTYPE_RADIOSITY), "/projects/show/Radiosity");
  dirs.resetDirectory("Scripts");
  EXPECT_EQ(dir("Scripts"), nullptr);
  EXPECT_THROW(dirs.setContentDirectory(""), std::invalid_argument);
  EXPECT_THROW(dirs.setDirectory(LWFTYPE_IMAGE, ""), std::invalid_argument);
  EXPECT_STREQ(dir(LWFTYPE_CONTENT), "/projects/show");

  // A string handed out stays where it is through unrelated changes and the same content again.
  dirs.setContentDirectory("/a/content/directory/long/enough/for/the/heap");
  const char* scenes = dir(LWFTYPE_SCENE);
  const std::string expected = scenes;
  dirs.setDirectory(LWFTYPE_IMAGE, "/elsewhere");
  dirs.setSettingsDirectory("/settings");
  dirs.setContentDirectory("/a/content/directory/long/enough/for/the/heap/");
  EXPECT_EQ(dir(LWFTYPE_SCENE), scenes);
  EXPECT_EQ(expected, scenes);
}

// Sets, or removes when null, a variable of this process's environment.
void SetVariable(const char* name, const char* value) {
#ifdef _WIN32
  _putenv_s(name, value ? value : "");
#else
  value ? setenv(name, value, 1) : unsetenv(name);
#endif
}

// Puts HOME, XDG_CONFIG_HOME and APPDATA back afterwards.
struct EnvironmentGuard {
  std::pair<const char*, std::optional<std::string>> saved[3] = {{"XDG_CONFIG_HOME", {}}, {"HOME", {}}, {"APPDATA", {}}};
  EnvironmentGuard() {
    for (auto& [name, value] : saved)
      if (const char* old = std::getenv(name)) value = old;
  }
  ~EnvironmentGuard() {
    for (auto& [name, value] : saved) SetVariable(name, value ? value->c_str() : nullptr);
  }
};

#ifdef _WIN32
TEST(DirectoryDefaults, SettingsLiveInTheUsersApplicationData) {
  EnvironmentGuard guard;
  SetVariable("APPDATA", "C:\\Users\\tester\\AppData\\Roaming\\");
  EXPECT_STREQ(lwhost::Directories().lookup(LWFTYPE_SETTING), "C:\\Users\\tester\\AppData\\Roaming\\lwhost");
  SetVariable("APPDATA", "Roaming");  // not a place of its own
  lwhost::Directories dirs;
  dirs.setContentDirectory("D:\\content");
  EXPECT_STREQ(dirs.lookup(LWFTYPE_SETTING), "D:\\content\\Settings");
}
#else
TEST(DirectoryDefaults, SettingsLiveInTheUsersConfigHome) {
  EnvironmentGuard guard;
  SetVariable("XDG_CONFIG_HOME", "/xdg/config/");
  SetVariable("HOME", "/home/tester/");
  EXPECT_STREQ(lwhost::Directories().lookup(LWFTYPE_SETTING), "/xdg/config/lwhost");
  SetVariable("XDG_CONFIG_HOME", "relative/config");  // XDG: relative values are ignored
  EXPECT_STREQ(lwhost::Directories().lookup(LWFTYPE_SETTING), "/home/tester/.config/lwhost");
  SetVariable("XDG_CONFIG_HOME", nullptr);
  SetVariable("HOME", nullptr);
  lwhost::Directories dirs;
  dirs.setContentDirectory("/content");
  EXPECT_STREQ(dirs.lookup(LWFTYPE_SETTING), "/content/Settings");
}
#endif

}  // namespace
