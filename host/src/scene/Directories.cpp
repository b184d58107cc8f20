#include "lwhost/Directories.h"

#include <lwhost.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace lwhost {

namespace {

const char* const kKnownKeys[] = {
    LWFTYPE_CONTENT, LWFTYPE_ANIMATION, LWFTYPE_IMAGE,  LWFTYPE_ENVELOPE, LWFTYPE_MOTION,
    LWFTYPE_OBJECT,  LWFTYPE_PLUGIN,    LWFTYPE_PREVIEW, LWFTYPE_PSFONT,  LWFTYPE_SCENE,
    LWFTYPE_SETTING, LWFTYPE_SURFACE,   LWFTYPE_NODES,   LWFTYPE_SOUNDS,  LWFTYPE_DYNAMICS,
    LWFTYPE_RIGS,    LWFTYPE_INSTALL,   LWFTYPE_LIGHTS,  LWFTYPE_RADIOSITY};

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

bool IsAbsolute(const std::string& path) {
  if (path.empty()) return false;
  if (IsSeparator(path[0])) return true;
  return path.size() >= 3 && path[1] == ':' && IsSeparator(path[2]);  // "C:/..."
}

// Joined in the folder's own style, so that "C:\Show" gives "C:\Show\Objects".
std::string Join(const std::string& folder, const std::string& name) {
  if (!folder.empty() && IsSeparator(folder.back())) return folder + name;
  const size_t last = folder.find_last_of("/\\");
  return folder + (last != std::string::npos ? folder[last] : '/') + name;
}

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::string(value) : std::string();
}

std::string Require(const std::string& value, const char* what) {
  if (value.empty()) throw std::invalid_argument(std::string("lwhost::Directories: empty ") + what);
  return value;
}

}  // namespace

Directories::Directories() {
  std::error_code error;
  std::filesystem::path cwd = std::filesystem::current_path(error);
  content_ = error ? std::string(".") : WithoutTrailingSeparator(cwd.string());
  environmentSettings_ = DefaultSettingsDirectory();
  for (const char* key : kKnownKeys) entries_.emplace(key, Entry{});
  refresh();
}

std::string Directories::WithoutTrailingSeparator(std::string path) {
  while (path.size() > 1 && IsSeparator(path.back())) {
    const bool driveRoot = path.size() == 3 && path[1] == ':';
    if (driveRoot) break;
    path.pop_back();
  }
  return path;
}

std::string Directories::DefaultSettingsDirectory() {
#ifdef _WIN32
  std::string appData = Environment("APPDATA");
  if (IsAbsolute(appData)) return Join(WithoutTrailingSeparator(appData), "lwhost");
#else
  // XDG says relative values are to be ignored.
  std::string base = Environment("XDG_CONFIG_HOME");
  if (IsAbsolute(base)) return Join(WithoutTrailingSeparator(base), "lwhost");
  std::string home = Environment("HOME");
  if (!home.empty()) return Join(Join(WithoutTrailingSeparator(home), ".config"), "lwhost");
#endif
  return std::string();
}

void Directories::setContentDirectory(const std::string& path) {
  content_ = WithoutTrailingSeparator(Require(path, "content directory"));
  refresh();
}

void Directories::setSettingsDirectory(const std::string& path) { setDirectory(LWFTYPE_SETTING, path); }

void Directories::setDirectory(const std::string& key, const std::string& path) {
  Entry& entry = entries_[Require(key, "directory key")];
  entry.overridden = true;
  entry.unset = false;
  entry.path = WithoutTrailingSeparator(Require(path, "directory path"));
  refresh();
}

void Directories::unsetDirectory(const std::string& key) {
  Entry& entry = entries_[Require(key, "directory key")];
  entry.unset = true;
  refresh();
}

void Directories::resetDirectory(const std::string& key) {
  auto it = entries_.find(key);
  if (it == entries_.end()) return;
  bool known = false;
  for (const char* k : kKnownKeys) known = known || key == k;
  if (!known) {
    entries_.erase(it);
    return;
  }
  it->second.overridden = false;
  it->second.unset = false;
  refresh();
}

const char* Directories::lookup(const char* key) const {
  if (!key) return nullptr;
  auto it = entries_.find(key);
  if (it == entries_.end() || it->second.unset) return nullptr;
  return it->second.shown.c_str();
}

void Directories::Show(Entry& entry, const std::string& path) {
  // Assigning an equal value could still move the buffer; plug-ins may hold the old pointer.
  if (entry.shown != path) entry.shown = path;
}

void Directories::refresh() {
  for (auto& [key, entry] : entries_) {
    if (entry.overridden) {
      Show(entry, entry.path);
    } else if (key == LWFTYPE_CONTENT || key == LWFTYPE_INSTALL) {
      Show(entry, content_);
    } else if (key == LWFTYPE_SETTING) {
      Show(entry, environmentSettings_.empty() ? Join(content_, "Settings") : environmentSettings_);
    } else {
      Show(entry, Join(content_, key));
    }
  }
}

}  // namespace lwhost
