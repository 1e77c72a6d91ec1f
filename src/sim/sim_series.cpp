#include "sim/sim_series.h"

#include <algorithm>
#include <array>
#include <map>
#include <random>

#include "base/files.h"
#include "base/number_format.h"
#include "base/quiet_host.h"
#include "base/text.h"

namespace quorvane {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostCells = 8;
constexpr std::size_t kMostSpeeds = 99;

SeriesPlan Refused(SimBox box, std::string refusal) {
  return {{}, std::move(refusal), box};
}

std::size_t CellsOf(const SeriesLists& lists) {
  return std::max(lists.loads.size(), lists.loadsB.size());
}

// The load of a cell, from 0.
const std::string& LoadOf(const std::vector<std::string>& loads, std::size_t cell) {
  return loads[loads.size() == 1 ? 0 : cell];
}

std::optional<std::pair<SimBox, std::string>> RefusalOfLists(const SimInputs& inputs,
                                                             const SeriesLists& lists) {
  const auto counts = [](std::size_t count, std::size_t most) {
    return count > 0 && count <= most;
  };
  if (!counts(lists.speeds.size(), kMostSpeeds)) {
    return {{SimBox::kSpeed, "A series has 1 to 99 speeds."}};
  }
  const bool two = UsesBox(inputs.model, SimBox::kLoadCB);
  if (!two && lists.loadsB.size() > 1) {
    return {{SimBox::kLoadCB, "The model has no second component."}};
  }
  for (const SimBox box : {SimBox::kLoadC, SimBox::kLoadCB}) {
    if (box == SimBox::kLoadCB && !two) continue;
    const std::size_t count = (box == SimBox::kLoadC ? lists.loads : lists.loadsB).size();
    if (!counts(count, kMostCells)) {
      return {{box, "A rotor has 1 to 8 cells, one for each load."}};
    }
    if (two && count != 1 && count != CellsOf(lists)) {
      return {{box, "A and B have as many loads, or one of them a single load for all cells."}};
    }
  }
  return std::nullopt;
}

// "speed 10000, load 2E-6".
std::string EntriesText(const SimInputs& inputs) {
  std::string text =
      "speed " + inputs.Text(SimBox::kSpeed) + ", load " + inputs.Text(SimBox::kLoadC);
  if (UsesBox(inputs.model, SimBox::kLoadCB)) text += " and " + inputs.Text(SimBox::kLoadCB);
  return text;
}

// A generator for each scan, so that one does not depend on how many others there are.
UniformSource NoiseOf(std::uint64_t seed, const SeriesScan& scan) {
  constexpr unsigned kHalf = 32;
  std::seed_seq words{static_cast<std::uint32_t>(seed), static_cast<std::uint32_t>(seed >> kHalf),
                      static_cast<std::uint32_t>(scan.number),
                      static_cast<std::uint32_t>(scan.cell)};
  std::array<std::uint32_t, 2> mixed{};
  words.generate(mixed.begin(), mixed.end());
  return UniformSource(static_cast<std::uint64_t>(mixed[1]) << kHalf | mixed[0]);
}

// A failure is told once, of the whole series.
class SeriesHost : public QuietHost {
 public:
  explicit SeriesHost(Host& host) : host_(host) {}
  void PrintIt(std::string_view text) override { host_.PrintIt(text); }
  void RunPendingEvents() override { host_.RunPendingEvents(); }

 private:
  Host& host_;
};

// Why the run makes no scan; empty if it does. A concentration of 0 stands for one that was not
// found.
std::string FaultOf(const SimOutcome& outcome, const SimInputs& inputs) {
  if (!outcome.ok) return outcome.error;
  const bool found = outcome.reference.a > 0.0 &&
                     (outcome.reference.b > 0.0 || !UsesBox(inputs.model, SimBox::kLoadCB));
  return found ? "" : "no concentration conserves the mass";
}

// A folder of its own within `folder`, gone at the end.
class FolderBeside {
 public:
  explicit FolderBeside(const fs::path& folder)
      : path_(folder / (".quorvane-series-" + std::to_string(std::random_device{}()))) {
    std::error_code error;
    if (!fs::create_directory(path_, error)) {
      throw FileFault(PathText(folder) + ": no file can be written there");
    }
  }
  FolderBeside(const FolderBeside&) = delete;
  FolderBeside& operator=(const FolderBeside&) = delete;
  ~FolderBeside() {
    std::error_code error;
    fs::remove_all(path_, error);
  }
  const fs::path& Path() const { return path_; }

 private:
  fs::path path_;
};

// Whether a file may take the place of what stands at `target`.
void CheckTarget(const fs::path& target) {
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (!fs::exists(status)) return;
  const bool writable = (status.permissions() & fs::perms::owner_write) != fs::perms::none;
  if (!fs::is_regular_file(status)) throw FileFault(PathText(target) + ": is no regular file");
  if (!writable) throw FileFault(PathText(target) + ": is write-protected");
}

void MoveAll(const fs::path& from, const fs::path& to, const std::vector<SeriesFile>& files) {
  for (const SeriesFile& file : files) CheckTarget(to / file.name);
  for (const SeriesFile& file : files) {
    std::error_code error;
    fs::rename(from / file.name, to / file.name, error);
    if (error) throw FileFault(PathText(to / file.name) + ": " + SystemErrorText(error));
  }
}

}  // namespace

std::vector<std::string> ListedEntries(std::string_view typed) {
  constexpr std::string_view kBreaks = " \t,;\r\n";
  std::vector<std::string> entries;
  for (std::size_t at = typed.find_first_not_of(kBreaks); at != std::string_view::npos;) {
    const std::size_t end = std::min(typed.find_first_of(kBreaks, at), typed.size());
    entries.emplace_back(typed.substr(at, end - at));
    at = typed.find_first_not_of(kBreaks, end);
  }
  return entries;
}

SeriesPlan PlanSeries(const SimInputs& inputs, const SeriesLists& lists) {
  if (auto refusal = RefusalOfLists(inputs, lists)) return Refused(refusal->first, refusal->second);
  SeriesPlan plan;
  for (std::size_t s = 0; s < lists.speeds.size(); ++s) {
    for (std::size_t c = 0; c < CellsOf(lists); ++c) {
      SeriesScan scan{"", static_cast<int>(s) + 1, static_cast<int>(c) + 1, inputs};
      scan.inputs.cell = scan.cell;
      std::map<SimBox, std::string> entries = {{SimBox::kSpeed, lists.speeds[s]},
                                               {SimBox::kLoadC, LoadOf(lists.loads, c)}};
      if (UsesBox(inputs.model, SimBox::kLoadCB)) {
        entries[SimBox::kLoadCB] = LoadOf(lists.loadsB, c);
      }
      if (const std::optional<EntryRefusal> refusal = StoreEntries(scan.inputs, entries)) {
        return Refused(refusal->box, entries[refusal->box] + ": " + std::string(refusal->message));
      }
      scan.file = FormatNumber(scan.number, "00000") +
                  (inputs.saveAs == SimFileKind::kRA8 ? ".RA" : ".IP") + std::to_string(scan.cell);
      plan.scans.push_back(std::move(scan));
    }
  }
  return plan;
}

std::string RunSeries(const SeriesPlan& plan, std::uint64_t seed, Host& host,
                      const SeriesTaker& take) {
  SeriesHost quiet(host);
  for (const SeriesScan& scan : plan.scans) {
    Simulator simulator;
    simulator.Inputs = scan.inputs;
    UniformSource noise = NoiseOf(seed, scan);
    const SimOutcome outcome = Simulate(simulator, noise, quiet);
    const std::string fault = FaultOf(outcome, scan.inputs);
    if (!fault.empty()) return scan.file + " (" + EntriesText(scan.inputs) + "): " + fault;
    take(scan, simulator, outcome.reference);
  }
  return {};
}

std::vector<std::string> StandingFiles(const SeriesPlan& plan, const fs::path& folder) {
  std::vector<std::string> names;
  for (const SeriesScan& scan : plan.scans) {
    std::error_code error;
    if (fs::exists(folder / scan.file, error)) names.push_back(scan.file);
  }
  return names;
}

void WriteSeries(const fs::path& folder, const std::vector<SeriesFile>& files) {
  std::error_code error;
  const bool made = fs::create_directories(folder, error);
  if (!DirExists(folder))
    throw FileFault(PathText(folder) + ": is no folder, and none can be made");
  try {
    const FolderBeside beside(folder);
    for (const SeriesFile& file : files) {
      WriteWholeFile(beside.Path() / PathFromText(file.name), Utf8ToCp1252(file.text));
    }
    MoveAll(beside.Path(), folder, files);
  } catch (const FileFault&) {
    if (made) fs::remove(folder, error);
    throw;
  }
}

}  // namespace quorvane
