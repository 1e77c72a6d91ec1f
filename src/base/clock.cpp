#include "base/clock.h"

#include <array>
#include <ctime>

std::string DateAndTimeText() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#if defined(_WIN32)
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d, %H:%M:%S", &local);
  return text.data();
}
