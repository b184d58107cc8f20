#include "platform/WebPage.h"

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {

bool OpenWebPage(const char* address) {
  if (!address) return false;
  // Double fork: the launcher is adopted by init, so the host never waits on it and no zombie
  // is left behind. The address is one argument; no shell sees it.
  pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    pid_t launcher = fork();
    if (launcher == 0) {
      char* const argv[] = {const_cast<char*>("xdg-open"), const_cast<char*>(address), nullptr};
      execvp(argv[0], argv);
      _exit(127);
    }
    _exit(launcher < 0 ? 1 : 0);
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace platform
