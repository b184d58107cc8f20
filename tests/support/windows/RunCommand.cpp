#include "support/RunCommand.h"

#include <windows.h>

#include <map>

namespace {

// Quoted so that the C runtime's command-line parser gives the word back unchanged.
std::string Quoted(const std::string& word) {
  if (!word.empty() && word.find_first_of(" \t\n\v\"") == std::string::npos) return word;
  std::string quoted = "\"";
  size_t backslashes = 0;
  for (char c : word) {
    if (c == '\\') {
      ++backslashes;
      continue;
    }
    // Backslashes double only before a quote.
    quoted.append(c == '"' ? 2 * backslashes + 1 : backslashes, '\\');
    backslashes = 0;
    quoted += c;
  }
  quoted.append(2 * backslashes, '\\');
  return quoted + "\"";
}

// This process's environment with the entries replaced or added, as CreateProcess takes it.
std::string EnvironmentBlock(const std::vector<std::string>& entries) {
  std::map<std::string, std::string> merged;  // Windows sorts the block by name
  char* own = GetEnvironmentStringsA();
  for (const char* e = own; e && *e; e += strlen(e) + 1) {
    const char* eq = strchr(e + 1, '=');  // names of drive variables begin with '='
    if (eq) merged[std::string(e, eq)] = eq + 1;
  }
  if (own) FreeEnvironmentStringsA(own);
  for (const std::string& e : entries) {
    const size_t eq = e.find('=');
    merged[e.substr(0, eq)] = eq == std::string::npos ? "" : e.substr(eq + 1);
  }
  std::string block;
  for (const auto& [name, value] : merged) block += name + "=" + value + '\0';
  return block + '\0';
}

}  // namespace

CommandResult RunCommand(const std::vector<std::string>& words, const std::vector<std::string>& environment) {
  CommandResult result;
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  HANDLE read = nullptr, write = nullptr;
  if (words.empty() || !CreatePipe(&read, &write, &inherit, 0)) return result;
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);

  std::string line;
  for (const std::string& w : words) line += (line.empty() ? "" : " ") + Quoted(w);
  std::string block = EnvironmentBlock(environment);
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = INVALID_HANDLE_VALUE;
  startup.hStdOutput = startup.hStdError = write;
  PROCESS_INFORMATION process{};
  const BOOL started = CreateProcessA(nullptr, &line[0], nullptr, nullptr, TRUE, 0, &block[0], nullptr,
                                      &startup, &process);
  CloseHandle(write);  // the child holds the only writing end now: end of file when it exits
  if (started) {
    char buffer[512];
    DWORD got = 0;
    while (ReadFile(read, buffer, sizeof buffer, &got, nullptr) && got > 0) result.output.append(buffer, got);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    // Codes from 0xC0000000 up are exceptions that ended the process, not exit codes.
    result.status = code >= 0xC0000000u ? -1 : static_cast<int>(code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  CloseHandle(read);
  // Windows programs end their lines with CR LF; the tests compare text as POSIX prints it.
  std::string text;
  for (char c : result.output)
    if (c != '\r') text += c;
  result.output = text;
  return result;
}
