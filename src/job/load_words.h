// The words of jobs and options for how a scan file is loaded.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "job/toml_reader.h"
#include "job/toml_writer.h"
#include "scan/loading.h"

namespace quorvane {

// How a file is to be loaded: the words of a job and of the options of `scan`.
struct LoadWords {
  std::optional<std::string> kind;
  std::optional<std::string> centerpiece;
  std::optional<std::vector<std::string>> channels;
};

// The centerpiece of that name; `table` is for messages. Throws JobFault for a word that is none.
Centerpiece CenterpieceOf(const std::string& word, const TableReader& table);

// Its name in jobs and windows.
const char* WordOf(Centerpiece centerpiece);

// The load settings that the words ask for; `table` is for messages.
// Throws JobFault for a word that is none.
ScanLoadSettings LoadSettingsOf(const LoadWords& words, const std::filesystem::path& file,
                                const TableReader& table);

// `file` as a job that stands in `folder` names it: from there if it lies in the folder or below
// it, else as it is. Both are whole paths.
std::string PathInJob(const std::filesystem::path& file, const std::filesystem::path& folder);

// Writes the settings as keys that read back as them. No channel at all is no word: then the key
// is left out.
void WriteLoadWords(const ScanLoadSettings& settings, TomlWriter& out);

}  // namespace quorvane
