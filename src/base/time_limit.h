// How long a calculation may take.
#pragma once

#include <optional>

#include "base/clock.h"

namespace quorvane {

// Whoever begins a calculation sets it; the Host that runs it asks at its fixed points.
class TimeLimit {
 public:
  void Set(double seconds) {  // from now
    seconds_ = seconds;
    since_ = Stopwatch();
  }
  void Clear() { seconds_.reset(); }
  bool Over() const { return seconds_ && since_.Seconds() > *seconds_; }

 private:
  std::optional<double> seconds_;
  Stopwatch since_;
};

}  // namespace quorvane
