// Damaged files of every format: readers refuse them with their own faults or read something sane;
// the sanitizer build watches what happens inside. QUORVANE_MUTATIONS sets how many a format.
#include <cstdlib>
#include <iostream>

#include <gtest/gtest.h>

#include "archive/archive_samples.h"
#include "archive/experiment_session.h"
#include "base/arithmetic.h"
#include "base/byte_stream.h"
#include "base/files.h"
#include "base/quiet_host.h"
#include "cli/fit_file.h"
#include "core/fit_restore.h"
#include "core/fit_run.h"
#include "core/settings/settings.h"
#include "job/job.h"
#include "job/json_records.h"
#include "job/page_setup.h"
#include "job/plan_file.h"
#include "match/match_reader.h"
#include "robust/mutation.h"
#include "rtf/rtf_reader.h"
#include "rtf/rtf_samples.h"
#include "rtf/rtf_writer.h"
#include "scan/dataset_files.h"
#include "scan/scan_samples.h"
#include "scan/text_import.h"
#include "sim/plan_errors.h"
#include "stats/fit_comparison.h"
#include "support/session.h"

using namespace quorvane;

namespace {

std::uint64_t Rounds() {
  const char* const text = std::getenv("QUORVANE_MUTATIONS");
  return text == nullptr ? 600 : std::strtoull(text, nullptr, 10);
}

// Gives `use` one damaged form of `sample` after the other, `times` as many as usual. It says
// whether the form was taken. The sample must be, and of the damaged forms at least the share
// `refused` must not be, or the reader has lost its checks.
template <class Use>
void ForEachMutation(const std::string& sample, double refused, Use&& use,
                     std::uint64_t times = 1) {
  constexpr std::uint64_t kEnough = 300;  // for shares
  const std::uint64_t all = times * Rounds();
  std::uint64_t taken = 0;
  EXPECT_TRUE(use(sample));
  for (std::uint64_t seed = 0; seed < all; ++seed) {
    SCOPED_TRACE(seed);
    ASSERT_NO_THROW(taken += use(Mutated(sample, seed)) ? 1 : 0);
  }
  std::cout << "Refused: " << all - taken << " of " << all << '\n';
  if (all < kEnough) return;
  EXPECT_GE(static_cast<double>(all - taken), refused * static_cast<double>(all));
}

// Whether `read` ends without one of the faults by which a reader refuses.
template <class... Faults, class Read>
bool Takes(Read&& read) {
  try {
    read();
    return true;
  } catch (const std::exception& fault) {
    if ((... || (dynamic_cast<const Faults*>(&fault) != nullptr))) return false;
    throw;
  }
}

std::string MadeScanText() {
  return ScanText(Rows(6.0, 0.004, 200));
}

// Chooses all datasets, sets up the model and fits for a while.
void FitShortly(QuorvaneModule& module, int model) {
  RecordingHost host;
  host.answers.assign(1, false);
  int events = 0;
  host.onEvents = [&] {
    if (++events > 40) module.Stop.Raise();
  };
  if (SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(model), host))
    RunFit(module, host);
}

// What windows and commands do with an experiment that was opened.
void UseExperiment(QuorvaneModule& module, const TempFolder& folder, std::uint64_t seed) {
  JsonText(DatasetsJson(module.Store.Datasets));
  for (const Dataset& dataset : module.Store.Datasets) {
    DatasetText(dataset, SavedSignal::kBaselineSubtracted);
  }
  FitShortly(module, static_cast<int>(seed % 11));
  RecordingHost host;
  SaveExperiment(module, folder / "again.exz", host);
}

}  // namespace

TEST(DamagedInput, ScansOfEveryKind) {
  const TempFolder folder;
  for (const FileKind kind : {FileKind::kIpRa, FileKind::kDat, FileKind::kFi, FileKind::kEl}) {
    ForEachMutation(MadeScanText(), 0.15, [&](const std::string& bytes) {
      const std::filesystem::path path = folder.Write("00001.RA1", bytes);
      RecordingHost host;
      DatasetStore store;
      GetCommentLines(store, path, host);
      ScanLoadSettings settings;
      settings.kind = kind;
      LoadSelectedFile(store, settings, path, host);
      for (const Dataset& dataset : store.Datasets) {
        EXPECT_GE(dataset.NumPoints, kMinPoints);
        DatasetText(dataset, SavedSignal::kAsLoaded);
      }
      return !store.Datasets.empty();
    });
  }
}

TEST(DamagedInput, ScansForMatching) {
  const TempFolder folder;
  ForEachMutation(MadeScanText(), 0.04, [&](const std::string& bytes) {
    return Takes<FileFault>(
        [&] { ReadMatchFile(folder.Write("00001.RA1", bytes), TimeField::kCentrifuge); });
  });
}

TEST(DamagedInput, Archives) {
  const TempFolder folder;
  const std::string sample = StoredZip(SampleMembers());
  ForEachMutation(sample, 0.95, [&](const std::string& bytes) {
    QuorvaneModule module;
    RecordingHost host;
    return LoadExperiment(module, folder.Write("a.exz", bytes), host);
  });
}

TEST(DamagedInput, MembersOfArchives) {
  const TempFolder folder;
  QuorvaneModule made;
  const StoredMembers sample = SampleMembers();
  std::uint64_t seed = 0;
  for (const std::size_t member : {std::size_t{0}, std::size_t{2}}) {
    // Records are long and mostly zeros; the damage goes where the fields are.
    const std::string head = sample[member].second.substr(0, member == 0 ? 5400 : 1000);
    ForEachMutation(head, 0.4, [&](std::string bytes) {
      StoredMembers members = sample;
      bytes.resize(head.size());
      members[member].second.replace(0, head.size(), bytes);
      QuorvaneModule module;
      RecordingHost host;
      const bool taken = LoadExperiment(module, folder.Write("a.exz", StoredZip(members)), host);
      if (taken) UseExperiment(module, folder, ++seed);
      return taken;
    });
  }
}

// What could be read is a text that survives being written.
TEST(DamagedInput, RichTexts) {
  ForEachMutation(
      WriteRtf(RichSample()), 0.005,
      [](const std::string& bytes) {
        return Takes<RtfFault>([&] {
          const RichText text = ReadRtf(bytes).text;
          EXPECT_TRUE(ReadRtf(WriteRtf(text)).text == text);
        });
      },
      5);
}

// A damaged byte may still make a chart, but one that is made of these bytes and no others.
TEST(DamagedInput, Charts) {
  Chart chart{"title", "radius", {ChartPanel()}};
  chart.panels[0].series.push_back({"data", SeriesStyle::kDot, 0, {6.0, 6.1}, {0.1, 0.2}});
  chart.panels[0].marks.push_back({6.05, 0, "mark"});
  const auto bytes = SerializeChart(chart);
  ForEachMutation(
      std::string(TextOf(bytes)), 0.9,
      [](const std::string& damaged) {
        return Takes<ByteFault>(
            [&] { EXPECT_EQ(TextOf(SerializeChart(ParseChart(BytesOf(damaged)))), damaged); });
      },
      5);
}

TEST(DamagedInput, CellGeometries) {
  const TempFolder folder;
  ForEachMutation("2\r\n1,3,\"sector\",6.0,1.0,6.5,1.1,7.2,1.2\r\n2,2,\"six\",5.9,1,7.1,1\r\n", 0.8,
                  [&](const std::string& bytes) {
                    return Takes<FileFault, SubscriptFault>(
                        [&] { LoadCellGeometries(folder.Write("channels.txt", bytes)); });
                  });
}

TEST(DamagedInput, Jobs) {
  const TempFolder folder;
  const std::string sample = ReadText(std::filesystem::path(QUORVANE_SOURCE_DIR) / "examples" /
                                      "monomer-dimer" / "job.toml");
  ForEachMutation(sample, 0.7, [&](const std::string& bytes) {
    return Takes<JobFault>([&] { ReadJob(folder.Write("job.toml", bytes)); });
  });
}

// A fit in JSON, and one that an archive keeps: what is taken can be compared and gone back to.
// A plan that is taken can be worked out, or leads beyond all numbers.
TEST(DamagedInput, Plans) {
  std::string plan =
      ReadText(std::filesystem::path(QUORVANE_SOURCE_DIR) / "examples" / "hetero" / "plan.toml");
  plan.insert(plan.find("base ="), "points = 20\n");
  ForEachMutation(plan, 0.4, [](const std::string& bytes) {
    return Takes<JobFault>([&] {
      const ExperimentPlan taken = ParsePlan(bytes, "plan");
      Takes<ArithmeticFault>([&] { PlanExperiment(taken); });
    });
  });
}

TEST(DamagedInput, Fits) {
  const TempFolder folder;
  QuorvaneModule module;
  QuietHost host;
  module.Preferences.SaveGraphs = module.Preferences.LogGraphs = false;
  AddScan(module, {.points = 10}, [](double x, double) { return 0.3 * std::exp(x); });
  ASSERT_TRUE(SetupFit(module.Setup, module.FitPage, module.Store, FirstModel(), host));
  const FitOutcome outcome = RunFit(module, host);
  const Json fit = {{"fit", FitJson(outcome, module.LastFit.get())}};
  ForEachMutation(JsonText(fit), 0.4, [&](const std::string& bytes) {
    return Takes<FileFault>([&] {
      const FitSummary found = ReadFitFile(folder.Write("fit.json", bytes));
      const NamedFit fits[] = {{"a", &found}, {"b", &module.Fits.Entries()[0].kept->summary}};
      if (RefusalOfComparison(fits).empty()) CompareFits(fits);
    });
  });
  const std::string setup = SetupWithFits(module, 1U << 16U).text;
  module.Fits.Clear();
  ForEachMutation(setup, 0.4, [&](const std::string& bytes) {
    if (!IsSetupText(bytes)) return false;
    QuorvaneModule other = module;
    return Takes<JobFault>([&] {
      TakeSetup(bytes, "setup", other);
      for (std::size_t k = 0; k < other.Fits.Entries().size(); ++k) {
        if (RestoreFit(other, k)) continue;
        EXPECT_GT(other.Store.Datasets[0].RefConc, 0.0);
        EXPECT_EQ(other.Setup.NumFitSets, 1);
      }
    });
  });
}

TEST(DamagedInput, Settings) {
  const TempFolder folder;
  const std::string sample =
      "[Settings]\nSaveGraphs=1\nKFormat=2\nGoodColor=&HFF\nVbar=0.73\n[MRU]\n1=\"a\\n.exz\"\n"
      "[LogFont]\nSize=10\n";
  ForEachMutation(sample, 0.0, [&](const std::string& bytes) {
    IniSettings store(folder.Write("quorvane.ini", bytes));
    QuorvaneModule module;
    LoadSettings(module, store);
    LoadWindowPlace(store);
    EXPECT_GE(LoadLogFont(store, {}).Size, 1.0F);
    return true;  // whatever cannot be read gives the default
  });
}

// What was understood of a damaged text is a scan that loads, point for point.
TEST(DamagedInput, TextsToImport) {
  std::string text = "a run\nR;3;20,0;14000;0006942;7,0870E09;280;32\n";
  for (int k = 0; k < 60; ++k) {
    text += "6," + std::to_string(100 + k) + ";0," + std::to_string(200 + k) + ";0,01\n";
  }
  ForEachMutation(text, 0.1, [](const std::string& damaged) {
    const TextImport import = UnderstandText(damaged, {}, "data.csv", "00001.RA1");
    if (import.state != ImportState::kReady) return false;
    std::istringstream in(ScanFileOf(import));
    const Dataset dataset = ReadDataset(FileKind::kIpRa, in, "00001.RA1", 1.0F, 20.0F);
    EXPECT_EQ(static_cast<std::size_t>(dataset.NumPoints), import.rows.size());
    return true;
  });
}
