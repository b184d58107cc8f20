// Stands in for a program VornNotify.cfg names: appends its arguments after the first to the
// file named by the first, each ended by 0x1F, the call ended by 0x1E, in one write.
#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#include <shellapi.h>

// main's arguments come in the ANSI code page; the notifier sends Unicode, recorded as UTF-8.
std::vector<std::string> Arguments(int, char**) {
  int n = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &n);
  std::vector<std::string> words;
  for (int i = 0; i < n; ++i) {
    std::string word(WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, nullptr, 0, nullptr, nullptr), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, &word[0], static_cast<int>(word.size()), nullptr, nullptr);
    words.push_back(word.c_str());
  }
  return words;
}
#else
#define O_BINARY 0
std::vector<std::string> Arguments(int argc, char** argv) { return {argv, argv + argc}; }
#endif

int main(int argc, char** argv) {
  const std::vector<std::string> args = Arguments(argc, argv);
  if (args.size() < 2) return 2;
  std::string record;
  for (std::size_t i = 2; i < args.size(); ++i) record += args[i] + '\x1f';
  record += '\x1e';
  const int fd = open(args[1].c_str(), O_WRONLY | O_CREAT | O_APPEND | O_BINARY, 0644);
  if (fd < 0) return 1;
  const bool ok = write(fd, record.data(), record.size()) == static_cast<ssize_t>(record.size());
  close(fd);
  return ok ? 0 : 1;
}
