// The browser FakeLauncher installs on Windows: FakeBrowser FOLDER ADDRESS...
#include <windows.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const std::string dir = argv[1];
  bool go = false;
  for (int i = 0; i < 100 && !(go = GetFileAttributesA((dir + "/go").c_str()) != INVALID_FILE_ATTRIBUTES); ++i) Sleep(100);
  FILE* out = std::fopen((dir + "/args.tmp").c_str(), "wb");
  if (!out) return 1;
  std::fprintf(out, "%s %s|%d\n", go ? "ok" : "blocked", argc > 2 ? argv[2] : "", argc - 2);
  std::fclose(out);
  return MoveFileA((dir + "/args.tmp").c_str(), (dir + "/args").c_str()) ? 0 : 1;
}
