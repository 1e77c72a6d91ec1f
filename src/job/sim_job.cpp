#include "job/sim_job.h"

#include <algorithm>
#include <array>
#include <map>

namespace quorvane {

namespace {

int ReadSimModel(TableReader& job) {
  const std::optional<std::variant<int, std::string>> model = job.IntegerOrText("model");
  if (!model) job.Fail("model", "the caption or the index of a model is wanted");
  const int index = std::holds_alternative<int>(*model)
                        ? std::get<int>(*model)
                        : SimModelIndexOf(std::get<std::string>(*model));
  if (index >= 0 && index < kSimModels) return index;
  std::string captions;
  for (int k = 0; k < kSimModels; ++k) captions += "\n  " + std::string(SimModelOf(k).caption);
  job.Fail("model", "there is no such model; the models, by index from 0, are:" + captions);
}

KDisplay ReadKDisplay(TableReader& job) {
  const std::string word = job.Text("k_display").value_or("ln");
  if (word == "ln") return KDisplay::kLn;
  if (word == "log10") return KDisplay::kLog10;
  if (word == "k") return KDisplay::kPlain;
  job.Fail("k_display", "\"ln\", \"log10\" or \"k\" is wanted");
}

SimFileKind ReadFileKind(TableReader& job) {
  const std::string word = job.Text("save_as").value_or("IP8");
  if (word == "IP8") return SimFileKind::kIP8;
  if (word == "RA8") return SimFileKind::kRA8;
  job.Fail("save_as", "\"IP8\" or \"RA8\" is wanted");
}

// The inputs that a series may have in lists.
constexpr std::array<SimBox, 3> kListed = {SimBox::kSpeed, SimBox::kLoadC, SimBox::kLoadCB};

// The lists of a series; an input without one has its single value. Nothing if there is no list.
std::optional<SeriesLists> ReadLists(TableReader& job, const SimInputs& inputs) {
  const auto listed = [&](SimBox box) { return job.IsList(InfoOf(box).key); };
  if (std::none_of(kListed.begin(), kListed.end(), listed)) return std::nullopt;
  const auto entries = [&](SimBox box) {
    return listed(box) ? job.NumbersOrTexts(InfoOf(box).key)
                       : std::vector<std::string>{inputs.Text(box)};
  };
  return SeriesLists{entries(SimBox::kSpeed), entries(SimBox::kLoadC), entries(SimBox::kLoadCB)};
}

void ReadEntries(TableReader& job, SimInputs& inputs) {
  std::map<SimBox, std::string> entries;
  for (int k = 0; k < kSimBoxes; ++k) {
    const auto box = static_cast<SimBox>(k);
    const bool mayBeList = std::find(kListed.begin(), kListed.end(), box) != kListed.end();
    if (mayBeList && job.IsList(InfoOf(box).key)) continue;
    if (const std::optional<std::string> text = job.NumberOrText(InfoOf(box).key)) {
      entries[box] = *text;
    }
  }
  if (const std::optional<EntryRefusal> refusal = StoreEntries(inputs, entries)) {
    job.Fail(InfoOf(refusal->box).key, std::string(refusal->message));
  }
}

}  // namespace

SimJob ReadSimJob(TableReader& job) {
  SimJob read{DefaultInputs(), {}};
  read.inputs.model = ReadSimModel(job);
  SetKDisplay(read.inputs, ReadKDisplay(job));
  read.inputs.saveAs = ReadFileKind(job);
  ReadEntries(job, read.inputs);
  read.lists = ReadLists(job, read.inputs);
  job.RefuseUnknownKeys();
  return read;
}

SeriesPlan PlanOf(const SimJob& read, const TableReader& job) {
  SeriesPlan plan = PlanSeries(read.inputs, *read.lists);
  if (plan.box) job.Fail(InfoOf(*plan.box).key, plan.refusal);
  return plan;
}

}  // namespace quorvane
