#include "masters/commandstats/Trimmed.h"

namespace vorn {

std::string trimmed(const std::string& text, const std::string& characters) {
  const std::string::size_type first = text.find_first_not_of(characters);
  if (first == std::string::npos) return {};
  const std::string::size_type last = text.find_last_not_of(characters);
  return text.substr(first, last - first + 1);
}

}  // namespace vorn
