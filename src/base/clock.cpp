#include "base/clock.h"

#include <array>
#include <ctime>

namespace quorvane {

std::string DateAndTimeText() {
  return DateAndTimeText(std::chrono::system_clock::now());
}

std::string DateAndTimeText(std::chrono::system_clock::time_point moment) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
  std::tm local{};
#if defined(_WIN32)
  localtime_s(&local, &seconds);
#else
  localtime_r(&seconds, &local);
#endif
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d, %H:%M:%S", &local);
  return text.data();
}

}  // namespace quorvane
