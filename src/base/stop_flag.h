// The wish of the user that a calculation end. Every long loop reads it at its fixed points.
#pragma once

#include <atomic>

namespace quorvane {

// May be raised from any thread while others read it. Whoever begins a calculation lowers it; a
// copy is a flag of its own that nobody has raised.
class StopFlag {
 public:
  StopFlag() = default;
  StopFlag(const StopFlag&) {}
  StopFlag& operator=(const StopFlag&) { return *this; }

  void Raise() { raised_.store(true, std::memory_order_relaxed); }
  void Lower() { raised_.store(false, std::memory_order_relaxed); }
  bool Raised() const { return raised_.load(std::memory_order_relaxed); }

 private:
  std::atomic<bool> raised_ = false;
};

}  // namespace quorvane
