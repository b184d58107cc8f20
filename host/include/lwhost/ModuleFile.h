#pragma once

#include <lwmodule.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace lwhost {

// A module file that could not be loaded; what() is one line naming the file and the fault.
class ModuleError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// One plug-in module, opened as LightWave opens it: load the shared object, find and check
// _mod_descrip, call startup, read the server records; shutdown and unload when done.
class ModuleFile {
 public:
  // Loads and checks the file and starts the module. Throws ModuleError.
  explicit ModuleFile(const std::string& path);
  ~ModuleFile();
  ModuleFile(const ModuleFile&) = delete;
  ModuleFile& operator=(const ModuleFile&) = delete;

  const std::string& path() const { return path_; }
  ModuleDescriptor* descriptor() const { return descriptor_; }
  void* serverData() const { return serverData_; }

  // The records the module published, in its order (the terminator is not included).
  const std::vector<const ServerRecord*>& records() const { return records_; }
  const ServerRecord* find(const std::string& className, const std::string& name) const;
  const ServerRecord& require(const std::string& className, const std::string& name) const;

  // Calls the record's activation function once with exactly this version.
  int activate(const ServerRecord& record, int version, void* local) const;
  // Steps through the versions in the order given until one is not refused as unsupported.
  // Returns the version accepted, or 0 if every one was refused; `result` gets the last answer.
  int activateFirst(const ServerRecord& record, std::initializer_list<int> versions, void* local,
                    int* result = nullptr) const;

  // Runs the module's shutdown now (the destructor does it otherwise), keeping it loaded.
  void shutdown();

 private:
  std::string path_;
  void* library_ = nullptr;
  ModuleDescriptor* descriptor_ = nullptr;
  void* serverData_ = nullptr;
  bool started_ = false;
  std::vector<const ServerRecord*> records_;
};

// The first tag string of a kind (the upper 16 bits of the tag), or null.
const char* TagText(const ServerRecord& record, unsigned int kind);

}  // namespace lwhost
