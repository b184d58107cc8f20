#include "validate/IsolatedRun.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace lwhost::validate {

namespace {

void WriteAll(int fd, const std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return;
    done += static_cast<std::size_t>(n);
  }
}

std::string ReadAll(int fd) {
  std::string bytes;
  char buffer[4096];
  for (;;) {
    const ssize_t n = read(fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return bytes;
    bytes.append(buffer, static_cast<std::size_t>(n));
  }
}

std::string SignalName(int signal) {
  const char* name = strsignal(signal);
  return "signal " + std::to_string(signal) + (name ? std::string(" (") + name + ")" : "");
}

}  // namespace

Outcome RunIsolated(const std::function<Outcome()>& body, unsigned timeoutSeconds) {
  int channel[2];
  if (pipe(channel) != 0) return Fail(std::string("cannot make a pipe: ") + std::strerror(errno));
  // Whatever is buffered would otherwise be printed by the child as well.
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) {
    close(channel[0]);
    close(channel[1]);
    return Fail(std::string("cannot start a process: ") + std::strerror(errno));
  }
  if (child == 0) {
    close(channel[0]);
    alarm(timeoutSeconds);
    const Outcome outcome = RunGuarded(body);
    WriteAll(channel[1], std::string(1, "PFS"[static_cast<int>(outcome.verdict)]) + outcome.text);
    close(channel[1]);
    // exit, not _exit: a leak checker reports at exit, and its report must fail the check.
    std::exit(0);
  }
  close(channel[1]);
  const std::string reply = ReadAll(channel[0]);
  close(channel[0]);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFSIGNALED(status)) {
    if (WTERMSIG(status) == SIGALRM)
      return Fail("still running after " + std::to_string(timeoutSeconds) + " s");
    return Fail("the process died of " + SignalName(WTERMSIG(status)));
  }
  if (reply.empty())
    return Fail("the process ended with status " + std::to_string(WEXITSTATUS(status)) + " before finishing");
  const Verdict verdict = reply[0] == 'P' ? Verdict::Pass : reply[0] == 'S' ? Verdict::Skip : Verdict::Fail;
  if (WEXITSTATUS(status) != 0)
    return Fail("the process ended with status " + std::to_string(WEXITSTATUS(status)) +
                " after the check (a sanitizer report?)");
  return {verdict, reply.substr(1)};
}

}  // namespace lwhost::validate
