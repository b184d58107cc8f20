#pragma once

#include <stdexcept>

namespace lwhost {

// An editing request the node editor refused (unknown connector, incompatible types, a loop);
// what() names the nodes and connectors involved. The graph is left as it was.
class NodeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace lwhost
