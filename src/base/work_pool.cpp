#include "base/work_pool.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <thread>
#include <vector>

namespace quorvane {

void RunTasks(std::size_t count, int threads, const std::function<void(std::size_t)>& task,
              const std::function<void()>& serve) {
  constexpr auto kTurn = std::chrono::milliseconds(20);
  if (threads <= 0) threads = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  std::atomic<std::size_t> next = 0;
  std::vector<std::future<void>> runners;
  for (std::size_t k = 0; k < std::min(static_cast<std::size_t>(threads), count); ++k) {
    runners.push_back(std::async(std::launch::async, [&] {
      for (std::size_t i = next++; i < count; i = next++) task(i);
    }));
  }
  for (const std::future<void>& runner : runners) {
    do {
      serve();
    } while (runner.wait_for(kTurn) != std::future_status::ready);
  }
  for (std::future<void>& runner : runners) runner.get();
}

}  // namespace quorvane
