#include "SharedLibrary.h"

#include <windows.h>

#include <filesystem>
#include <system_error>

namespace lwhost::library {

namespace {

std::string SystemMessage(DWORD code) {
  char* text = nullptr;
  const DWORD n = FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                 nullptr, code, 0, reinterpret_cast<char*>(&text), 0, nullptr);
  std::string message = n ? std::string(text, n) : "error " + std::to_string(code);
  if (text) LocalFree(text);
  // Texts such as "%1 is not a valid Win32 application" leave the file to the caller.
  for (size_t at; (at = message.find("%1")) != std::string::npos;) message.replace(at, 2, "the file");
  while (!message.empty() && (message.back() == '\n' || message.back() == '\r' || message.back() == '.' || message.back() == ' '))
    message.pop_back();
  return message;
}

}  // namespace

void* Open(const std::string& path, std::string& error) {
  // A bare name would be looked for beside lwhost.exe and along PATH first; the user means the
  // file they named. The module's own folder is searched for the DLLs it needs.
  std::error_code ec;
  const std::filesystem::path full = std::filesystem::absolute(path, ec);
  // A damaged file must not stop a headless host with a dialog box.
  DWORD oldMode = 0;
  SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &oldMode);
  HMODULE h = LoadLibraryExW(ec ? std::filesystem::path(path).c_str() : full.c_str(), nullptr,
                             LOAD_WITH_ALTERED_SEARCH_PATH);
  const DWORD code = h ? 0 : GetLastError();
  SetThreadErrorMode(oldMode, nullptr);
  if (!h) error = "not a loadable module (" + SystemMessage(code) + ")";
  return h;
}

void* Symbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void Close(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

}  // namespace lwhost::library
