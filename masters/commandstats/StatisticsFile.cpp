#include "masters/commandstats/StatisticsFile.h"

#include <algorithm>
#include <cctype>
#include <istream>
#include <limits>
#include <ostream>

#include "masters/commandstats/Trimmed.h"

namespace vorn {

namespace {

// A CSV field: quoted, with its quotes doubled, when it holds a separator, a quote or a line end.
std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string field = "\"";
  for (char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + '"';
}

}  // namespace

StatisticsLayout LayoutForFileName(const std::string& fileName) {
  static const std::string csv = ".csv";
  if (fileName.size() < csv.size()) return StatisticsLayout::Text;
  const bool isCsv = std::equal(csv.begin(), csv.end(), fileName.end() - static_cast<std::ptrdiff_t>(csv.size()),
                                [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
  return isCsv ? StatisticsLayout::Csv : StatisticsLayout::Text;
}

void ReadStatistics(std::istream& in, std::map<std::string, int>& counts) {
  int count = 0;
  std::string name;
  while (!in.eof()) {
    if (!(in >> count)) {
      if (in.eof() || in.bad()) break;
      // Deliberate departure: the loader this replaces stopped reading at a line that does not
      // start with a number but never left its loop, so one bad line froze Layout at start-up.
      // The line is skipped instead and every well-formed line after it still loads.
      in.clear();
      in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
      continue;
    }
    std::getline(in, name);
    name = trimmed(name, " \t\n");
    if (count != 0 && !name.empty()) counts[name] = count;
  }
}

void WriteStatistics(std::ostream& out, const std::multimap<int, std::string>& sorted, StatisticsLayout layout) {
  if (layout == StatisticsLayout::Csv) out << "count,command\n";
  for (auto entry = sorted.rbegin(); entry != sorted.rend(); ++entry) {
    if (layout == StatisticsLayout::Csv)
      out << entry->first << ',' << CsvField(entry->second) << '\n';
    else
      out << entry->first << '\t' << entry->second << '\n';
  }
}

}  // namespace vorn
