#include "platform/WebPage.h"

#include <windows.h>
#include <objbase.h>
#include <shellapi.h>

namespace platform {

bool OpenWebPage(const char* address) {
  if (!address) return false;
  // The shell may pass the address on through COM; it wants an apartment on this thread. A
  // thread that already has one keeps it.
  const HRESULT com = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
  SHELLEXECUTEINFOA request{};
  request.cbSize = sizeof request;
  // No error box of the shell's own: without a browser the click does nothing, as elsewhere.
  request.fMask = SEE_MASK_FLAG_NO_UI;
  request.lpVerb = "open";
  request.lpFile = address;
  request.nShow = SW_SHOWNORMAL;
  const BOOL opened = ShellExecuteExA(&request);
  if (SUCCEEDED(com)) CoUninitialize();
  return opened != FALSE;
}

}  // namespace platform
