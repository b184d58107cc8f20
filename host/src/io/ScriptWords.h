#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lwhost {

// One line of a network, scene or session file as words: split at blanks, double quotes group
// blanks into a word (and are dropped), '#' outside quotes starts a comment. With `escapes`,
// \" and \\ inside quotes stand for themselves. Nothing when a quote is left open.
std::optional<std::vector<std::string>> SplitScriptWords(const std::string& line, bool escapes);

}  // namespace lwhost
