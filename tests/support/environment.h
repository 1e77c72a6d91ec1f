// A variable of the environment, changed for as long as this lives.
#pragma once

#include <cstdlib>
#include <string>
#include <utility>

namespace quorvane {

class ChangedVariable {
 public:
  // An empty value unsets it.
  ChangedVariable(std::string name, const std::string& value) : name_(std::move(name)) {
    const char* old = std::getenv(name_.c_str());
    if (old != nullptr) old_ = old;
    Set(value);
  }
  ~ChangedVariable() { Set(old_); }
  ChangedVariable(const ChangedVariable&) = delete;
  ChangedVariable& operator=(const ChangedVariable&) = delete;

 private:
  void Set(const std::string& value) const {
#if defined(_WIN32)
    _putenv_s(name_.c_str(), value.c_str());
#else
    if (value.empty()) {
      unsetenv(name_.c_str());
    } else {
      setenv(name_.c_str(), value.c_str(), 1);
    }
#endif
  }

  std::string name_;
  std::string old_;
};

}  // namespace quorvane
