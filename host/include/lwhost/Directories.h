#pragma once

#include <map>
#include <string>

namespace lwhost {

// LightWave's directory list, as "Directory Info" reports it: one path per file-type key
// (LWFTYPE_*), never with a trailing separator.
//
// Defaults: "Content" is the content directory (the working directory when the list was made,
// in the system's own form: "C:\Show" on Windows), "Install" is the content directory too,
// "Settings" is lwhost's folder in the user's config home ($XDG_CONFIG_HOME if it is an absolute
// path, else ~/.config; on Windows %APPDATA%; <content>/Settings if none is known), and every
// other LWFTYPE_* key is the folder of that name under the content directory ("Objects" ->
// <content>/Objects, joined with the separator the content directory uses). Keys not in that
// list answer null until set. Nothing is created on disk.
//
// The strings handed out stay valid until that key's path changes.
class Directories {
 public:
  Directories();

  // Relative paths are kept relative (LightWave reads them against the content directory).
  // Throws std::invalid_argument for an empty path or key.
  void setContentDirectory(const std::string& path);
  void setSettingsDirectory(const std::string& path);
  // Any key, including ones LightWave does not define.
  void setDirectory(const std::string& key, const std::string& path);
  // The key answers null, as LightWave does for a directory it has no path for.
  void unsetDirectory(const std::string& key);
  // Back to the default (or to unknown for keys without one).
  void resetDirectory(const std::string& key);

  // The path for a key, or null for unknown keys and null.
  const char* lookup(const char* key) const;
  const std::string& contentDirectory() const { return content_; }

  // The settings folder the environment suggests, or "" when it suggests none.
  static std::string DefaultSettingsDirectory();
  // Drops trailing '/' and '\', keeping a root ("/", "C:/", "C:\") intact.
  static std::string WithoutTrailingSeparator(std::string path);

 private:
  struct Entry {
    bool overridden = false;
    bool unset = false;
    std::string path;  // the configured path when overridden
    std::string shown; // what lookup hands out; kept stable while unchanged
  };
  void refresh();
  static void Show(Entry& entry, const std::string& path);

  std::string content_;
  std::string environmentSettings_;
  std::map<std::string, Entry, std::less<>> entries_;
};

}  // namespace lwhost
