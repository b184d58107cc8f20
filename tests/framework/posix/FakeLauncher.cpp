#include "FakeLauncher.h"

#include <sys/stat.h>

#include <cstdlib>

// A shell script named xdg-open, found first on PATH.
FakeLauncher::FakeLauncher() {
  char pattern[] = "/tmp/vorn-launcher-XXXXXX";
  dir_ = mkdtemp(pattern);
  std::ofstream script(dir_ + "/xdg-open");
  script << "#!/bin/sh\n"
         << "i=0; while [ ! -e '" << dir_ << "/go' ] && [ $i -lt 100 ]; do sleep 0.1; i=$((i+1)); done\n"
         << "if [ -e '" << dir_ << "/go' ]; then s=ok; else s=blocked; fi\n"
         << "printf '%s %s|%d\\n' \"$s\" \"$1\" \"$#\" > '" << dir_ << "/args.tmp'\n"
         << "mv '" << dir_ << "/args.tmp' '" << dir_ << "/args'\n";
  script.close();
  chmod((dir_ + "/xdg-open").c_str(), 0755);
  const char* path = std::getenv("PATH");
  previous_ = path ? path : "";
}

FakeLauncher::~FakeLauncher() {
  setenv("PATH", previous_.c_str(), 1);
  std::system(("rm -rf '" + dir_ + "'").c_str());
}

void FakeLauncher::install() { setenv("PATH", (dir_ + ":" + previous_).c_str(), 1); }
void FakeLauncher::installNothing() { setenv("PATH", (dir_ + "/empty").c_str(), 1); }
