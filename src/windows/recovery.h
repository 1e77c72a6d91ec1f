// What a program that did not end normally has left behind.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "archive/experiment_file.h"
#include "archive/unsaved_work.h"

class Host;

// Offers the experiments abandoned in `folder`, the latest first, until the user takes one;
// `takeUp` gets it, and its place is returned. Declined ones are removed. A damaged one is set
// aside, with a message; one that cannot be read now is left for another time.
std::optional<UnsavedWork> OfferUnsavedWork(const std::filesystem::path& folder, Host& host,
                                            const std::function<void(ReadExperiment&&)>& takeUp);
