// Preferences kept per user between sessions: text values by section and key.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

struct SettingsEntry {
  std::string key;
  std::string value;  // UTF-8
};

// Section names are compared without regard to case, keys exactly.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  // Nothing if the key is absent or the store cannot be read.
  virtual std::optional<std::string> Get(std::string_view section, std::string_view key) const = 0;

  // Writes the entries in their order, all or none. Throws FileFault if that fails.
  virtual void Set(std::string_view section, std::span<const SettingsEntry> entries) = 0;
};

// The store as an INI file. Lines that are not understood, comments among them, stay as they are.
// A value with a line break, a quote or a blank at an end stands in double quotes, with \" \\ \n
// and \r inside. Each Get reads the file and each Set writes it whole, so that two running
// programs do not undo what the other one wrote.
class IniSettings : public SettingsStore {
 public:
  explicit IniSettings(std::filesystem::path path) : path_(std::move(path)) {}

  std::optional<std::string> Get(std::string_view section, std::string_view key) const override;
  void Set(std::string_view section, std::span<const SettingsEntry> entries) override;

 private:
  std::vector<std::string> ReadLines() const;

  std::filesystem::path path_;
};

}  // namespace quorvane
