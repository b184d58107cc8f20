#include "IsolatedRun.h"

#include <exception>

namespace lwhost::validate {

Outcome RunGuarded(const std::function<Outcome()>& body) {
  try {
    return body();
  } catch (const std::exception& e) {
    return Fail(std::string("an exception reached the host: ") + e.what());
  } catch (...) {
    return Fail("an unknown exception reached the host");
  }
}

}  // namespace lwhost::validate
