#pragma once

#include <string>

namespace hostkit {

// Something with a name the user chose.
class Nameable {
 public:
  const std::string& GetName() const { return name_; }
  virtual void SetName(std::string name) { name_ = std::move(name); }
  // A null text clears the name.
  void SetName(const char* name) {
    if (name)
      SetName(std::string(name));
    else
      name_.clear();
  }

 protected:
  ~Nameable() = default;

 private:
  std::string name_;
};

}  // namespace hostkit
