#pragma once

#include <iosfwd>
#include <map>
#include <string>

namespace vorn {

// How a statistics file is written: "count<TAB>name" lines, or CSV for spreadsheets.
enum class StatisticsLayout { Text, Csv };

// CSV for names ending in ".csv" (any case), text for every other name.
StatisticsLayout LayoutForFileName(const std::string& fileName);

// Reads "count name" lines into `counts`: a later line for a name replaces an earlier one;
// zero counts and empty names are skipped, names are trimmed of blanks, tabs and line feeds.
void ReadStatistics(std::istream& in, std::map<std::string, int>& counts);

// Writes `sorted` from its last entry to its first: the highest count first, and among equal
// counts the later name first.
void WriteStatistics(std::ostream& out, const std::multimap<int, std::string>& sorted, StatisticsLayout layout);

}  // namespace vorn
