#pragma once

#include <stdexcept>

namespace lwhost {

// A plug-in refused to create an instance, or its server could not be activated for one.
// what() is the plug-in's own text when it gave one, unchanged, so it can be shown as is.
class CreationError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace lwhost
