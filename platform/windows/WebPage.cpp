#include "platform/WebPage.h"

#include <windows.h>
#include <shellapi.h>

namespace platform {

bool OpenWebPage(const char* address) {
  if (!address) return false;
  HINSTANCE result = ShellExecuteA(nullptr, "open", address, nullptr, nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(result) > 32;
}

}  // namespace platform
