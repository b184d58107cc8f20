#include "platform/WebPage.h"

#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace platform {

bool OpenWebPage(const char* address) {
  if (!address) return false;
  // `open` hands the address to the default browser and returns at once.
  char* const argv[] = {const_cast<char*>("/usr/bin/open"), const_cast<char*>(address), nullptr};
  pid_t pid;
  if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv, environ) != 0) return false;
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace platform
