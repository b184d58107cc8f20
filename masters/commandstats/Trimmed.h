#pragma once

#include <string>

namespace vorn {

// `text` without the leading and trailing characters that occur in `characters`.
std::string trimmed(const std::string& text, const std::string& characters);

}  // namespace vorn
