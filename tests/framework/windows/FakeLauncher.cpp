#include "FakeLauncher.h"

#include <windows.h>

#include <filesystem>

// The program the shell opens http addresses with, replaced for the test's life.
namespace {

const char kHandler[] = "http\\shell\\open\\command";

void SetHandler(const std::string& command) {
  RegSetKeyValueA(HKEY_CLASSES_ROOT, kHandler, nullptr, REG_SZ, command.c_str(), DWORD(command.size() + 1));
}

}  // namespace

FakeLauncher::FakeLauncher() {
  dir_ = (std::filesystem::temp_directory_path() / ("vorn-launcher-" + std::to_string(GetCurrentProcessId()))).string();
  std::filesystem::create_directories(dir_);
  char previous[1024] = "";
  DWORD size = sizeof previous;
  if (RegGetValueA(HKEY_CLASSES_ROOT, kHandler, nullptr, RRF_RT_REG_SZ, nullptr, previous, &size) == ERROR_SUCCESS)
    previous_ = previous;
}

FakeLauncher::~FakeLauncher() {
  SetHandler(previous_);
  std::error_code ignored;
  std::filesystem::remove_all(dir_, ignored);
}

void FakeLauncher::install() { SetHandler("\"" FAKE_BROWSER_PATH "\" \"" + dir_ + "\" \"%1\""); }
void FakeLauncher::installNothing() { SetHandler("\"" + dir_ + "\\no-browser.exe\" \"%1\""); }
