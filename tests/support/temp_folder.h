// A folder of a test's own, removed with all that is in it. Two runs at once do not meet in it.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace quorvane {

class TempFolder {
 public:
  TempFolder() {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::temp_directory_path() /
            (std::string("quorvane-") + info->test_suite_name() + "-" + info->name() + "-" +
             std::to_string(getpid()));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // `name` is UTF-8.
  std::filesystem::path operator/(std::string_view name) const {
    return path_ / std::u8string(name.begin(), name.end());
  }
  const std::filesystem::path& path() const { return path_; }

  // Writes `text` as it is to a file of the folder.
  std::filesystem::path Write(std::string_view name, std::string_view text) const {
    const std::filesystem::path file = *this / name;
    std::ofstream(file, std::ios::binary) << text;
    return file;
  }

 private:
  std::filesystem::path path_;
};

inline std::string ReadText(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace quorvane
