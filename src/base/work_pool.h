// Independent tasks on all cores, while the thread that waits for them serves the user.
#pragma once

#include <cstddef>
#include <functional>

namespace quorvane {

// Calls task(0) .. task(count - 1), each once, on at most `threads` threads (0: one a processor
// core), in rising order of their start; `serve` on this thread every 20 ms until all have ended.
// A task that no longer wants to run returns at once. What a task throws is thrown here, after all
// have ended.
void RunTasks(std::size_t count, int threads, const std::function<void(std::size_t)>& task,
              const std::function<void()>& serve);

}  // namespace quorvane
