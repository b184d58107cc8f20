#include "lwhost/ModuleFile.h"

#include <fstream>
#include <sstream>
#include <sys/stat.h>

#include "SharedLibrary.h"
#include "lwhost/Host.h"
#include "lwhost/ModuleImage.h"

namespace lwhost {

namespace {

#ifdef _WIN32
const auto CheckImage = CheckPeImage;
#else
const auto CheckImage = CheckElfImage;
#endif

std::string Hex(unsigned int v) {
  std::ostringstream s;
  s << "0x" << std::hex << v;
  return s.str();
}

}  // namespace

ModuleFile::ModuleFile(const std::string& path) : path_(path) {
  auto fail = [&](const std::string& what) { throw ModuleError(path + ": " + what); };

  struct stat st {};
  if (stat(path.c_str(), &st) != 0) fail("no such file");
  if (!S_ISREG(st.st_mode)) fail("not a regular file");
  {
    std::ifstream in(path, std::ios::binary);
    if (!in) fail("cannot be read");
    std::string bytes(static_cast<std::size_t>(st.st_size), '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    const std::string damage = CheckImage(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    if (!damage.empty()) fail(damage);
  }

  std::string error;
  library_ = library::Open(path, error);
  if (!library_) fail(error);

  try {
    descriptor_ = static_cast<ModuleDescriptor*>(library::Symbol(library_, "_mod_descrip"));
    if (!descriptor_) fail("no module descriptor (_mod_descrip is not exported)");
    if (descriptor_->sysSync != MOD_SYSSYNC)
      fail("bad synchronisation word " + Hex(descriptor_->sysSync) + ", expected " + Hex(MOD_SYSSYNC));
    if (descriptor_->sysVersion != MOD_SYSVER)
      fail("unsupported module system version " + std::to_string(descriptor_->sysVersion) +
           ", expected " + std::to_string(MOD_SYSVER));
    if (descriptor_->sysMachine != MOD_MACHINE)
      fail("built for another platform (machine word " + Hex(descriptor_->sysMachine) +
           ", expected " + Hex(MOD_MACHINE) + ")");
    if (!descriptor_->startup) fail("the descriptor has no startup function");

    serverData_ = descriptor_->startup();
    if (!serverData_) fail("startup failed (returned null)");
    started_ = true;

    // The module publishes its records during startup.
    if (!descriptor_->serverDefs) fail("no server records after startup");
    for (const ServerRecord* r = descriptor_->serverDefs; r->className; ++r) records_.push_back(r);
  } catch (...) {
    if (started_ && descriptor_->shutdown) descriptor_->shutdown(serverData_);
    library::Close(library_);
    throw;
  }
}

ModuleFile::~ModuleFile() {
  shutdown();
  library::Close(library_);
}

void ModuleFile::shutdown() {
  if (!started_) return;
  started_ = false;
  records_.clear();
  if (descriptor_->shutdown) descriptor_->shutdown(serverData_);
}

const ServerRecord* ModuleFile::find(const std::string& className, const std::string& name) const {
  for (const ServerRecord* r : records_)
    if (className == r->className && r->name && name == r->name) return r;
  return nullptr;
}

const ServerRecord& ModuleFile::require(const std::string& className, const std::string& name) const {
  const ServerRecord* r = find(className, name);
  if (!r) throw ModuleError(path_ + ": no server " + className + " \"" + name + "\"");
  return *r;
}

int ModuleFile::activate(const ServerRecord& record, int version, void* local) const {
  return record.activate(version, Host::lookupFunction(), local, serverData_);
}

int ModuleFile::activateFirst(const ServerRecord& record, std::initializer_list<int> versions,
                              void* local, int* result) const {
  int answer = AFUNC_BADVERSION;
  for (int v : versions) {
    answer = activate(record, v, local);
    if (answer != AFUNC_BADVERSION) {
      if (result) *result = answer;
      return answer == AFUNC_OK ? v : 0;
    }
  }
  if (result) *result = answer;
  return 0;
}

const char* TagText(const ServerRecord& record, unsigned int kind) {
  if (!record.tagInfo) return nullptr;
  for (const ServerTagInfo* t = record.tagInfo; t->string; ++t)
    if ((t->tag & 0xFFFF0000u) == kind) return t->string;
  return nullptr;
}

}  // namespace lwhost
