// What a program that did not end normally has left behind.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "archive/experiment_file.h"
#include "archive/unsaved_work.h"
#include "windows/session/dialogs.h"

namespace quorvane {

class Host;

// Offers the experiments abandoned in `folder`, the latest first, until the user takes one;
// `takeUp` gets it, and its place is returned. Declined ones are removed, those put off stay for
// the next start. A damaged one is set aside, with a message; one that cannot be read now is left.
std::optional<UnsavedWork> OfferUnsavedWork(
    const std::filesystem::path& folder, Host& host,
    const std::function<WorkChoice(const std::string& title, const std::string& text)>& choose,
    const std::function<void(ReadExperiment&&)>& takeUp);

}  // namespace quorvane
