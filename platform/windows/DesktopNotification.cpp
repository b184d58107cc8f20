// Desktop notices as tray balloons (Shell_NotifyIcon) from a hidden message-only window.
#include "platform/DesktopNotification.h"

#include <windows.h>
#include <shellapi.h>

#include <string>

#include "WideText.h"

namespace platform {

namespace {

template <std::size_t N>
void Copy(wchar_t (&to)[N], const std::wstring& from) {
  lstrcpynW(to, from.c_str(), static_cast<int>(N));
}

class TrayIcon {
 public:
  ~TrayIcon() {
    if (added_) Shell_NotifyIconW(NIM_DELETE, &data_);
    if (window_) DestroyWindow(window_);
  }

  unsigned int show(const DesktopNotice& notice, std::string* problem) {
    if (failed_) return 0;
    if (!added_ && !add(notice.application)) {
      failed_ = true;
      *problem = "the tray cannot show notices; notifications are not shown on the desktop";
      return 0;
    }
    data_.uFlags = NIF_INFO;
    Copy(data_.szInfoTitle, Wide(notice.title));
    Copy(data_.szInfo, Wide(notice.body));
    data_.dwInfoFlags = NIIF_INFO;
    // One balloon at a time: every notice replaces the last, so the id is always the icon's.
    return Shell_NotifyIconW(NIM_MODIFY, &data_) ? data_.uID : 0;
  }

 private:
  bool add(const std::string& application) {
    window_ = CreateWindowExW(0, L"STATIC", L"Vorn notices", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (!window_) return false;
    data_.cbSize = sizeof data_;
    data_.hWnd = window_;
    data_.uID = 1;
    data_.uFlags = NIF_ICON | NIF_TIP;
    data_.hIcon = LoadIconW(nullptr, MAKEINTRESOURCEW(32516));  // IDI_INFORMATION
    Copy(data_.szTip, Wide(application));
    added_ = Shell_NotifyIconW(NIM_ADD, &data_) != FALSE;
    return added_;
  }

  NOTIFYICONDATAW data_{};
  HWND window_ = nullptr;
  bool added_ = false;
  bool failed_ = false;
};

}  // namespace

unsigned int ShowDesktopNotice(const DesktopNotice& notice, std::string* problem) {
  static TrayIcon tray;
  return tray.show(notice, problem);
}

}  // namespace platform
