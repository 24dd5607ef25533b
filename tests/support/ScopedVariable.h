#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace ovinta::test {

/// Sets, or for null unsets, a variable of the environment for its own life.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    set(value);
  }
  ~ScopedVariable() { set(before_ ? before_->c_str() : nullptr); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void set(const char* value) {
    if (value) {
      setenv(name_, value, 1);
    } else {
      unsetenv(name_);
    }
  }

  const char* const name_;
  std::optional<std::string> before_;
};

}  // namespace ovinta::test
