#include "robust/mutation.h"

#include <array>
#include <cstddef>
#include <random>

namespace quorvane {

namespace {

class Mutator {
 public:
  explicit Mutator(std::uint64_t seed) : random_(seed) {}

  std::string Injure(std::string text) {
    const std::size_t injuries = Below(4) + 1;
    for (std::size_t k = 0; k < injuries && !text.empty(); ++k) Injury(text);
    return text;
  }

 private:
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(random_() % bound); }

  void Injury(std::string& text) {
    const std::size_t at = Below(text.size());
    const std::size_t length = Below(std::min<std::size_t>(text.size() - at, 64)) + 1;
    switch (Below(8)) {
      case 0:
        text[at] = static_cast<char>(text[at] ^ 1 << Below(8));
        break;
      case 1: {
        constexpr std::array<int, 6> kExtremes = {0x00, 0x01, 0x7F, 0x80, 0xFE, 0xFF};
        text.replace(at, Below(8) + 1, Below(8) + 1,
                     static_cast<char>(kExtremes[Below(kExtremes.size())]));
        break;
      }
      case 2:
        text.erase(at, length);
        break;
      case 3:
        text.insert(Below(text.size()), text.substr(at, length));
        break;
      case 4:
        text.resize(at);
        break;
      default:
        ReplaceNumber(text, at);
    }
  }

  // The next digits behind `at` become an extreme number.
  void ReplaceNumber(std::string& text, std::size_t at) {
    constexpr std::array<const char*, 10> kNumbers = {"0",           "-1",   "1e308", "1e999",
                                                      "-1e-320",     "nan",  "65536", "2147483648",
                                                      "99999999999", "0x1p9"};
    const char* const kDigits = "0123456789.";
    const std::size_t begin = text.find_first_of(kDigits, at);
    if (begin == std::string::npos) return;
    const std::size_t end = text.find_first_not_of(kDigits, begin);
    text.replace(begin, end == std::string::npos ? end : end - begin,
                 kNumbers[Below(kNumbers.size())]);
  }

  std::mt19937_64 random_;
};

}  // namespace

std::string Mutated(const std::string& sample, std::uint64_t seed) {
  return Mutator(seed).Injure(sample);
}

}  // namespace quorvane
