#include "lwhost/ServerTable.h"

#include <lwserver.h>

#include <algorithm>
#include <array>
#include <vector>

namespace lwhost {

std::string FormatServerTable(const ModuleFile& module) {
  using Row = std::array<std::string, 5>;
  std::vector<Row> rows{{"CLASS", "SERVER", "USER NAME", "GROUPS", "DESCRIPTION"}};
  auto text = [](const char* s) { return std::string(s ? s : ""); };
  for (const ServerRecord* r : module.records()) {
    std::string groups = text(TagText(*r, SRVTAG_CMDGROUP));
    if (const char* node = TagText(*r, SRVTAG_NODEGROUP)) groups += (groups.empty() ? "" : "; ") + std::string(node);
    rows.push_back({text(r->className), text(r->name), text(TagText(*r, SRVTAG_USERNAME)), groups,
                    text(TagText(*r, SRVTAG_DESCRIPTION))});
  }
  std::array<size_t, 5> width{};
  for (const Row& row : rows)
    for (size_t c = 0; c < row.size(); ++c) width[c] = std::max(width[c], row[c].size());
  std::string out;
  for (const Row& row : rows) {
    std::string line;
    for (size_t c = 0; c < row.size(); ++c) {
      line += row[c];
      if (c + 1 < row.size()) line += std::string(width[c] - row[c].size() + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + "\n";
  }
  return out;
}

}  // namespace lwhost
