// Stands in for a program VornNotify.cfg names: appends its arguments after the first to the
// file named by the first, each ended by 0x1F, the call ended by 0x1E, in one write.
#include <fcntl.h>
#include <unistd.h>

#include <string>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  std::string record;
  for (int i = 2; i < argc; ++i) record += std::string(argv[i]) + '\x1f';
  record += '\x1e';
  const int fd = open(argv[1], O_WRONLY | O_CREAT | O_APPEND, 0644);
  if (fd < 0) return 1;
  const bool ok = write(fd, record.data(), record.size()) == static_cast<ssize_t>(record.size());
  close(fd);
  return ok ? 0 : 1;
}
