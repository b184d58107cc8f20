#include "support/RunCommand.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {

// Quoted so that the C runtime's command-line parser gives the word back unchanged.
std::string Quoted(const std::string& word) {
  std::string quoted = "\"";
  size_t backslashes = 0;
  for (char c : word) {
    if (c == '"') quoted.append(backslashes + 1, '\\');  // backslashes double only before a quote
    backslashes = c == '\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, '\\') + "\"";
}

// Drops the CR of CR LF: the tests compare lines as POSIX prints them.
void AppendText(std::string& text, const char* bytes, size_t n) {
  for (size_t i = 0; i < n; ++i)
    if (bytes[i] != '\r') text += bytes[i];
}

}  // namespace

CommandResult RunCommand(const std::string& commandLine) {
  CommandResult result;
  FILE* pipe = _popen((commandLine + " 2>&1").c_str(), "rb");
  if (!pipe) return result;
  char buffer[512];
  for (size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) AppendText(result.output, buffer, got);
  result.status = _pclose(pipe);
  return result;
}

CommandResult RunCommand(const std::vector<std::string>& words, const std::vector<std::string>& environment) {
  CommandResult result;
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  HANDLE read = nullptr, write = nullptr;
  if (words.empty() || !CreatePipe(&read, &write, &inherit, 0)) return result;
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  std::string line;
  for (const std::string& w : words) line += Quoted(w) + " ";
  // The child inherits our environment; the entries are ours only while it starts.
  std::vector<std::pair<std::string, std::string>> saved;
  for (const std::string& e : environment) {
    const std::string name = e.substr(0, e.find('='));
    const char* old = std::getenv(name.c_str());
    saved.emplace_back(name, old ? old : "");
    SetEnvironmentVariableA(name.c_str(), e.substr(name.size() + 1).c_str());
  }
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = startup.hStdError = write;
  PROCESS_INFORMATION process{};
  const BOOL started = CreateProcessA(nullptr, &line[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process);
  for (const auto& [name, value] : saved) SetEnvironmentVariableA(name.c_str(), value.empty() ? nullptr : value.c_str());
  CloseHandle(write);  // the child holds the only writing end now: end of file when it exits
  char buffer[512];
  DWORD got = 0;
  while (started && ReadFile(read, buffer, sizeof buffer, &got, nullptr) && got > 0) AppendText(result.output, buffer, got);
  CloseHandle(read);
  if (!started) return result;
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  // Codes from 0xC0000000 up are exceptions that ended the process, not exit codes.
  result.status = code >= 0xC0000000u ? -1 : static_cast<int>(code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return result;
}
