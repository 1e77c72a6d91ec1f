#include "windows/session/recovery.h"

#include <algorithm>
#include <string>
#include <variant>

#include "base/clock.h"
#include "base/files.h"
#include "base/host.h"
#include "base/text.h"
#include "fit/models.h"
#include "rtf/log_text.h"

namespace quorvane {

namespace {

constexpr const char* kTitle = "Unsaved Work";

// "1 graph", "3 graphs", "no graphs".
std::string Counted(std::size_t count, const std::string& noun) {
  if (count == 0) return "no " + noun + "s";
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string LogText(const std::string& bytes) {
  const RichText text = ReadLog(bytes, {}).text;
  std::size_t pictures = 0;
  for (const Paragraph& paragraph : text.paragraphs) {
    pictures += static_cast<std::size_t>(std::count_if(
        paragraph.items.begin(), paragraph.items.end(),
        [](const InlineItem& item) { return std::holds_alternative<Picture>(item); }));
  }
  return "A log of " + Counted(text.paragraphs.size() - 1, "line") + " with " +
         Counted(pictures, "picture");
}

std::string ModelText(const Experiment& experiment) {
  const double index = experiment.FitPage.ModelIndex;
  for (const Model& model : Models()) {
    if (index == static_cast<double>(model.index)) return std::string(model.name);
  }
  return std::string(FirstModel().name);
}

std::string OfferText(const Experiment& experiment, const UnsavedWork& work) {
  return "Quorvane did not end normally. This experiment was not saved:\n\n" +
         Counted(experiment.Datasets.size(), "dataset") + ", model " + ModelText(experiment) +
         "\n" + Counted(experiment.GraphStreams.size(), "graph") + "\n" + LogText(experiment.log) +
         "\nFolder " + Cp1252ToUtf8(Trim(experiment.directory.View())) + "\nAs it was on " +
         DateAndTimeText(work.KeptAt()) + "\n\nOpen it? Later leaves it for the next start.";
}

void SetAside(UnsavedWork& work, const std::string& why, Host& host) {
  std::string where;
  try {
    where = "It is now " + PathText(work.SetAside());
  } catch (const FileFault& fault) {
    where = "It cannot be moved out of the way: " + std::string(fault.what());
  }
  host.ShowMessage(kTitle,
                   "Quorvane did not end normally. What it kept of the unsaved experiment is "
                   "damaged and cannot be opened:\n" +
                       why + "\n\n" + where,
                   MessageIcon::kExclamation);
}

}  // namespace

std::optional<UnsavedWork> OfferUnsavedWork(
    const std::filesystem::path& folder, Host& host,
    const std::function<WorkChoice(const std::string& title, const std::string& text)>& choose,
    const std::function<void(ReadExperiment&&)>& takeUp) {
  for (UnsavedWork& work : UnsavedWork::Abandoned(folder)) {
    try {
      ReadExperiment read = ReadExperimentFile(work.File());
      const WorkChoice choice = choose(kTitle, OfferText(read.experiment, work));
      if (choice == WorkChoice::kDelete) work.Discard();
      if (choice != WorkChoice::kOpen) continue;
      takeUp(std::move(read));
      return std::move(work);
    } catch (const ArchiveFault& fault) {
      SetAside(work, fault.what(), host);
    } catch (const std::exception& fault) {  // as of a file that is larger than the memory
      host.ReportFailure(fault.what());
    }
  }
  return std::nullopt;
}

}  // namespace quorvane
