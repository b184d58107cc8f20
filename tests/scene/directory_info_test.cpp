// "Directory Info": defaults, configuration and the strings handed out.
#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include "SceneTestSupport.h"

namespace {

// Sets environment variables for one test and puts the old values back.
class EnvironmentGuard {
 public:
  ~EnvironmentGuard() {
    for (auto& [name, value] : saved_)
      if (value)
        setenv(name.c_str(), value->c_str(), 1);
      else
        unsetenv(name.c_str());
  }
  void set(const char* name, const char* value) {
    if (!saved_.count(name)) {
      const char* old = std::getenv(name);
      saved_[name] = old ? std::optional<std::string>(old) : std::nullopt;
    }
    if (value)
      setenv(name, value, 1);
    else
      unsetenv(name);
  }

 private:
  std::map<std::string, std::optional<std::string>> saved_;
};

class DirectoryInfoTest : public SceneTest {
 protected:
  LWDirInfoFunc* dirInfo() {
    return reinterpret_cast<LWDirInfoFunc*>(host.globals().lookup(LWDIRINFOFUNC_GLOBAL, GFUSE_ACQUIRE));
  }
};

TEST_F(DirectoryInfoTest, ConfiguredPathsNeverEndInASeparator) {
  LWDirInfoFunc* dir = dirInfo();
  ASSERT_NE(dir, nullptr);
  lwhost::Directories& dirs = scene.directories();

  dirs.setContentDirectory("/projects/show///");
  EXPECT_STREQ(dir(LWFTYPE_CONTENT), "/projects/show");
  EXPECT_STREQ(dir(LWFTYPE_OBJECT), "/projects/show/Objects");
  EXPECT_STREQ(dir(LWFTYPE_PLUGIN), "/projects/show/Plug-ins");
  EXPECT_STREQ(dir(LWFTYPE_SCENE), "/projects/show/Scenes");
  EXPECT_STREQ(dir(LWFTYPE_INSTALL), "/projects/show");

  // A root stays a root, and what is under it gets exactly one separator.
  dirs.setContentDirectory("/");
  EXPECT_STREQ(dir(LWFTYPE_CONTENT), "/");
  EXPECT_STREQ(dir(LWFTYPE_IMAGE), "/Images");
  dirs.setContentDirectory("C:\\LightWave\\");
  EXPECT_STREQ(dir(LWFTYPE_CONTENT), "C:\\LightWave");
  dirs.setContentDirectory("C:\\");
  EXPECT_STREQ(dir(LWFTYPE_CONTENT), "C:\\");
  EXPECT_STREQ(dir(LWFTYPE_MOTION), "C:\\Motions");

  dirs.setContentDirectory("/projects/show");
  dirs.setSettingsDirectory("/etc/lwhost/");
  EXPECT_STREQ(dir(LWFTYPE_SETTING), "/etc/lwhost");
  dirs.setDirectory(LWFTYPE_IMAGE, "textures/");  // relative stays relative
  EXPECT_STREQ(dir(LWFTYPE_IMAGE), "textures");
  dirs.setDirectory("Scripts", "/opt/scripts");  // keys beyond LightWave's list are allowed
  EXPECT_STREQ(dir("Scripts"), "/opt/scripts");

  // Unknown keys, null, and keys LightWave leaves without a path.
  EXPECT_EQ(dir("Bogus"), nullptr);
  EXPECT_EQ(dir("objects"), nullptr);  // keys are case-sensitive
  EXPECT_EQ(dir(""), nullptr);
  EXPECT_EQ(dir(nullptr), nullptr);
  dirs.unsetDirectory(LWFTYPE_RADIOSITY);
  EXPECT_EQ(dir(LWFTYPE_RADIOSITY), nullptr);
  dirs.resetDirectory(LWFTYPE_RADIOSITY);
  EXPECT_STREQ(dir(LWFTYPE_RADIOSITY), "/projects/show/Radiosity");
  dirs.resetDirectory(LWFTYPE_IMAGE);
  EXPECT_STREQ(dir(LWFTYPE_IMAGE), "/projects/show/Images");
  dirs.resetDirectory("Scripts");
  EXPECT_EQ(dir("Scripts"), nullptr);

  EXPECT_THROW(dirs.setContentDirectory(""), std::invalid_argument);
  EXPECT_THROW(dirs.setDirectory(LWFTYPE_IMAGE, ""), std::invalid_argument);
  EXPECT_STREQ(dir(LWFTYPE_CONTENT), "/projects/show");
}

TEST_F(DirectoryInfoTest, StringsStayValidUntilTheirPathChanges) {
  lwhost::Directories& dirs = scene.directories();
  dirs.setContentDirectory("/a/content/directory/long/enough/for/the/heap");
  LWDirInfoFunc* dir = dirInfo();
  const char* scenes = dir(LWFTYPE_SCENE);
  const std::string expected = scenes;

  // Unrelated changes, and setting the same content again, leave the string where it is.
  dirs.setDirectory(LWFTYPE_IMAGE, "/elsewhere");
  dirs.setSettingsDirectory("/settings");
  dirs.setContentDirectory("/a/content/directory/long/enough/for/the/heap/");
  EXPECT_EQ(dir(LWFTYPE_SCENE), scenes);
  EXPECT_EQ(expected, scenes);
}

TEST(DirectoryDefaults, SettingsLiveInTheUsersConfigHome) {
  EnvironmentGuard env;
  env.set("XDG_CONFIG_HOME", "/xdg/config/");
  env.set("HOME", "/home/tester");
  {
    lwhost::Directories dirs;
    EXPECT_STREQ(dirs.lookup(LWFTYPE_SETTING), "/xdg/config/lwhost");
    const std::string content = dirs.lookup(LWFTYPE_CONTENT);
    EXPECT_FALSE(content.empty());
    EXPECT_STREQ(dirs.lookup(LWFTYPE_OBJECT), (content + "/Objects").c_str());
  }
  env.set("XDG_CONFIG_HOME", "relative/config");  // XDG: relative values are ignored
  EXPECT_STREQ(lwhost::Directories().lookup(LWFTYPE_SETTING), "/home/tester/.config/lwhost");
  env.set("XDG_CONFIG_HOME", nullptr);
  env.set("HOME", "/home/tester/");
  EXPECT_STREQ(lwhost::Directories().lookup(LWFTYPE_SETTING), "/home/tester/.config/lwhost");
  env.set("HOME", nullptr);
  {
    lwhost::Directories dirs;
    dirs.setContentDirectory("/content");
    EXPECT_STREQ(dirs.lookup(LWFTYPE_SETTING), "/content/Settings");
  }
}

}  // namespace
