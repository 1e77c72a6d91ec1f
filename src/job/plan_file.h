// A planned experiment as a TOML file.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "job/toml_reader.h"
#include "sim/plan.h"

namespace quorvane {

// Reads a plan that keeps all rules of RefusalOf. Throws FileFault if the file cannot be read, and
// JobFault with file, line and key for anything that is wrong in it.
ExperimentPlan ReadPlan(const std::filesystem::path& path);

// The same of a text; `name` is for messages, and files that it names are looked for from `folder`.
ExperimentPlan ParsePlan(std::string_view text, const std::string& name,
                         const std::filesystem::path& folder = {});

// The same of a table that was read.
ExperimentPlan PlanOf(const TomlFile& file, const std::filesystem::path& folder);

// The text of a plan file that reads back as `plan`.
std::string PlanText(const ExperimentPlan& plan);

}  // namespace quorvane
