#include "platform/StartProgram.h"

#include <cerrno>
#include <cstdlib>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {

namespace {

// The program's path, searched in PATH when it names no folder. Done before forking: the
// child of a threaded host may only call what is safe after fork.
std::string Resolve(const std::string& program) {
  if (program.find('/') != std::string::npos) return program;
  const char* path = std::getenv("PATH");
  std::string folders = path ? path : "/usr/bin:/bin";
  for (std::size_t begin = 0; begin <= folders.size();) {
    std::size_t end = folders.find(':', begin);
    if (end == std::string::npos) end = folders.size();
    const std::string folder = end > begin ? folders.substr(begin, end - begin) : ".";
    const std::string candidate = folder + "/" + program;
    if (access(candidate.c_str(), X_OK) == 0) return candidate;
    begin = end + 1;
  }
  return "";
}

}  // namespace

bool StartProgram(const std::vector<std::string>& argv) {
  if (argv.empty()) return false;
  const std::string program = Resolve(argv[0]);
  if (program.empty()) return false;
  std::vector<char*> args;
  for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);

  // Double fork: the program is adopted by init, so nobody waits for it and no zombie is left.
  // The arguments go to it as they are; no shell sees them.
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    const pid_t program_pid = fork();
    if (program_pid == 0) {
      execv(program.c_str(), args.data());
      _exit(127);
    }
    _exit(program_pid < 0 ? 1 : 0);
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace platform
