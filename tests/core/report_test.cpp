// Faults caught here: a lost, moved or reworded line of the report, a field of the wrong width, an
// error shown for the wrong parameter. Date, time and seconds are masked; the rest is to the
// letter. To take over a wanted change: read the text that the failure prints, then copy it to
// golden/.
#include <fstream>
#include <regex>

#include "base/text.h"
#include "core/fit_run.h"
#include "fit/models.h"
#include "support/recording_host.h"
#include "support/session.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

std::string MaskedLog(const RecordingHost& host) {
  std::string log;
  for (const std::string& line : host.lines) log += WithUnixLines(line) + '\n';
  log = std::regex_replace(log, std::regex(R"(\d{4}-\d\d-\d\d, \d\d:\d\d:\d\d)"), "DATE, TIME");
  return std::regex_replace(log, std::regex(R"(Fitting Time: \d*\.\d\d secs)"),
                            "Fitting Time: SECONDS secs");
}

void ExpectGolden(const RecordingHost& host, const char* name) {
  const std::string path = std::string(QUORVANE_SOURCE_DIR) + "/tests/core/golden/" + name;
  EXPECT_EQ(MaskedLog(host), ReadText(path)) << path;
}

// A cell that begins above the first points, so that the assembly warns.
std::vector<CellGeometry> ShortCell() {
  return {{1, "a cell type with a long name", {6.45F, 8.0F}, {1.0F, 1.5F}}};
}

TEST(Report, OneComponentWithLoadingConcentrations) {
  const auto signal = [](double x, double omega) {
    return 0.02 + 0.4 * std::exp(7000 * omega * x);
  };
  QuorvaneModule module;
  module.CellGeometries = ShortCell();
  AddScan(module, {.name = "exactly-20-chars.dat", .speed = 14000}, signal);
  AddScan(module, {.name = "a-name-of-21-char.dat", .speed = 20000}, signal);
  RecordingHost host;
  SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(0), host);
  module.Setup.CalcLoadingConcs = true;
  module.Setup.chkOffset[0] = CheckState::kUnchecked;
  ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  ExpectGolden(host, "ideal_report.txt");
}

TEST(Report, TwoComponentsWithMassConservationAndConstrainedRatio) {
  const auto signal = [](double x, double omega) {
    const double a = 0.2 * std::exp(7000 * omega * x);
    const double b = 0.1 * std::exp(4000 * omega * x);
    return 0.02 + a + 0.7 * b + 1.7 * a * b * std::exp(1.5) + 2.4 * a * b * b * 0.5 * std::exp(3.0);
  };
  QuorvaneModule module;
  module.CellGeometries = ShortCell();
  for (const MadeScan& scan : {MadeScan{"one.dat", 120, 12000}, MadeScan{"two.dat", 120, 20000}}) {
    Dataset& dataset = AddScan(module, scan, signal);
    dataset.ExtCoeff2 = 0.7;
    dataset.RefConc = 0.19;
    dataset.RefConc2 = 0.11;
    dataset.ALoad = 0.35;
    dataset.BLoad = 0.25;
  }
  RecordingHost host;
  SetupFit(module.Setup, module.FitPage, module.Store, *FindModel(7), host);
  module.Setup.UseMassConservation = true;
  module.Setup.chkMWB = module.Setup.chkMWB2 = CheckState::kUnchecked;
  module.Setup.chkOffset.assign(2, CheckState::kUnchecked);
  ConstrainRatios(module.Setup);
  module.FitPage.ModelMW = 7000.0;
  module.FitPage.ModelMWB = 4000.0;
  module.FitPage.ModelLnK1 = 1.3;
  module.FitPage.ModelLnK2 = 0.5;
  ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished);
  ExpectGolden(host, "ab2_report.txt");
}

// The lines that each model adds. Only the baseline and the reference concentration are fitted: two
// parameters that every model can find.
TEST(Report, EveryModelHasItsLines) {
  const auto signal = [](double x, double omega) {
    return 0.02 + 0.4 * std::exp(7000 * omega * x);
  };
  RecordingHost all;
  for (const Model& model : Models()) {
    QuorvaneModule module;
    Dataset& dataset = AddScan(module, {.name = "one.dat"}, signal);
    dataset.Rmen = 6.39;
    dataset.Rbase = 6.61;
    dataset.RefConc2 = 0.01;
    RecordingHost host;
    SetupFit(module.Setup, module.FitPage, module.Store, model, host);
    FitSetup& setup = module.Setup;
    for (CheckState* check : {&setup.chkRefC2[0], &setup.chkMWB, &setup.chkMWB2, &setup.chkVirialC,
                              &setup.chkLnK1, &setup.chkLnK2, &setup.chkLnK3, &setup.chkAlpha}) {
      *check = CheckState::kUnchecked;
    }
    module.FitPage.ModelMWB = 5000.0;
    module.FitPage.ModelLnK1 = -5.0;
    module.FitPage.ModelLnK2 = -6.0;
    module.FitPage.ModelLnK3 = -7.0;
    ASSERT_EQ(RunFit(module, host).ending, FitEnding::kFinished) << model.name;
    all.lines.emplace_back(model.name);
    const auto isHead = [](const auto& line) { return line.starts_with("Buoyant MW"); };
    const auto isEnd = [](const auto& line) { return line.starts_with("\r\nNumber of Iter"); };
    std::copy(std::find_if(host.lines.begin(), host.lines.end(), isHead),
              std::find_if(host.lines.begin(), host.lines.end(), isEnd),
              std::back_inserter(all.lines));
  }
  ExpectGolden(all, "model_lines.txt");
}

}  // namespace
