#include "platform/StartProgram.h"

#include <windows.h>

#include "WideText.h"

namespace platform {

namespace {

// One argument quoted so that the C runtime's parser gives it back unchanged.
void AppendQuoted(std::wstring& line, const std::wstring& arg) {
  line += L'"';
  std::size_t backslashes = 0;
  for (wchar_t c : arg) {
    if (c == L'\\') {
      ++backslashes;
      continue;
    }
    line.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
    backslashes = 0;
    line += c;
  }
  line.append(backslashes * 2, L'\\');
  line += L'"';
}

}  // namespace

bool StartProgram(const std::vector<std::string>& argv) {
  if (argv.empty()) return false;
  std::wstring line;
  for (const std::string& arg : argv) {
    if (!line.empty()) line += L' ';
    AppendQuoted(line, Wide(arg));
  }
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  // No shell, no waiting: the handles are closed at once and the program runs on its own.
  if (!CreateProcessW(nullptr, &line[0], nullptr, nullptr, FALSE, DETACHED_PROCESS | CREATE_NO_WINDOW, nullptr, nullptr,
                      &startup, &process))
    return false;
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

}  // namespace platform
