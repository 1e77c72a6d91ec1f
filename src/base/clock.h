// Dates in the log, and a steady clock for elapsed times.
#pragma once

#include <chrono>
#include <string>

namespace quorvane {

// Local date and time now as "2026-11-21, 14:03:22".
std::string DateAndTimeText();

// The same of a moment.
std::string DateAndTimeText(std::chrono::system_clock::time_point moment);

// Seconds since it was made; never runs backwards.
class Stopwatch {
 public:
  double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace quorvane
