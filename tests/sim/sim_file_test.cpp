// Faults caught here: a file that our own reader or another program reads differently, a change of
// kind that touches the user's comment.
#include <array>
#include <string>

#include <gtest/gtest.h>

#include "scan/scan_file.h"
#include "sim_runs.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

const std::string kOneComponent =
    " : MW(A)=60000, C(A)=1.00E-06, v(A)=0.730, E(A)=197400, dens=1.000";
const std::string kTwoComponents =
    " : MW(A)=60000,C(A)=1.00E-06,v(A)=0.730,E(A)=197400,MW(B)=60000,C(B)=1.00E-06,v(B)=0.730,"
    "E(B)=197400,dens=1.000";

// What stands in front of the first line break, and the rest.
std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find("\r\n"));
}
std::string AfterFirstLine(const std::string& text) {
  return text.substr(text.find("\r\n") + 2);
}

}  // namespace

TEST(ParameterLine, NamesTheParametersOfEachModel) {
  const std::array<std::string, 11> lines = {
      "QV:Ideal" + kOneComponent,
      "QV:Nonideal" + kOneComponent + ", B*M=0.01",
      "QV:Mon-Nmer" + kOneComponent + ", N=2, LnK1=11.5000",
      "QV:Mon-Nmer-Mmer" + kOneComponent + ", N=2, LnK1=11.5000, M=3, LnK2=12.0000",
      "QV:Inc.Mon.- Mon.-Nmer" + kOneComponent + ", N=2, LnK1=11.5000, Alpha=0.10",
      "QV:Mon.- Nmer - Inc.Nmer" + kOneComponent + ", N=2, LnK1=11.5000, Alpha=0.10",
      "QV:A+B<>AB" + kTwoComponents + ",LnKAB=11.5000",
      "QV:A+B<>AB+B<>AB2" + kTwoComponents + ",LnKAB=12.0000,LnKAB2=12.0000",
      "QV:A+B<>AB+B<>AB2+B<>AB3" + kTwoComponents + ",LnKAB=11.5000,LnKAB2=12.0000,LnKAB3=12.0000",
      "QV:Isodesmic Association" + kOneComponent + ", LnKiso=11.5000",
      "QV:nA<>An+B<>AnB" + kTwoComponents + ",Nmer=2,LnKAn=11.5000,LnKAnB=12.0000"};
  for (int model = 0; model < kSimModels; ++model) {
    const SimulatedRun run = RunOf(model, {{SimBox::kLnK1, "11.5"}});
    EXPECT_EQ(FirstLine(run.simulator.Text), lines[static_cast<std::size_t>(model)]);
  }
}

TEST(SimFileWriter, KeepsTheColumnsOfANegativeSignal) {
  std::string text;
  int points = 0;
  SimFileWriter file(text, 0.01, points);
  file.AddPoint(6.3504, 0.0123456);
  file.AddPoint(6.3514, -12.3456);
  EXPECT_EQ(text,
            "   6.3504   1.23456E-002    1.00000E-002\r\n"
            "   6.3514  -1.23456E+001    1.00000E-002\r\n");
  EXPECT_EQ(points, 2);
}

TEST(Simulate, WritesAScanThatLoads) {
  struct Case {
    SimFileKind kind;
    const char* header;
    int wavelength;
  };
  for (const Case& c : {Case{SimFileKind::kIP8, "P 8 04.5 09000 0099999 1.0000E12 675 21", 675},
                        Case{SimFileKind::kRA8, "R 8 04.5 09000 0099999 1.0000E12 301 21", 301}}) {
    SimulatedRun run;
    run.simulator.Inputs.saveAs = c.kind;
    EXPECT_FALSE(StoreEntries(
        run.simulator.Inputs,
        {{SimBox::kTemp, "4.46"}, {SimBox::kSpeed, "9000"}, {SimBox::kWaveL, "300.5"}}));
    run.Repeat();
    EXPECT_EQ(FirstLine(AfterFirstLine(run.simulator.Text)), c.header);
    const TempFolder folder;
    DatasetStore store;
    EXPECT_EQ(LoadDataFile(store, FileKind::kIpRa, folder.Write("s.RA8", run.simulator.Text), "s",
                           {5.0F, 8.0F}, run.host),
              LoadOutcome::kLoaded);
    ASSERT_EQ(store.NumDatasets(), 1);
    const Dataset& scan = store.Datasets.front();
    EXPECT_EQ(scan.NumPoints, 301);
    EXPECT_EQ(scan.Speed, 9000);
    EXPECT_EQ(scan.Wavelength, c.wavelength);
    EXPECT_NEAR(scan.Temperature, 4.5, 1.0e-6);
    for (int i = 0; i < 301; ++i) {
      const auto k = static_cast<std::size_t>(i);
      EXPECT_NEAR(scan.R[k], run.Column().r[i], 1.0e-9);
      EXPECT_NEAR(scan.C[k], run.Column().signal[i], 1.0e-6);
      EXPECT_EQ(scan.Err[k], 0.01);
    }
  }
}

TEST(ChooseFileKind, ChangesTheHeaderAndNothingElse) {
  Simulator simulator = RunOf(0, {}).simulator;
  const std::string rows = AfterFirstLine(AfterFirstLine(simulator.Text));
  simulator.Text = "my comment\r\n" + AfterFirstLine(simulator.Text);
  const auto text = [&](const char* header) {
    return "my comment\r\n" + std::string(header) + "\r\n" + rows;
  };
  EXPECT_FALSE(EnterText(simulator, SimBox::kWaveL, "250"));
  EXPECT_EQ(simulator.Text, text("P 8 20.0 16000 0099999 1.0000E12 675 21"));
  ChooseFileKind(simulator, SimFileKind::kRA8);
  EXPECT_EQ(simulator.Text, text("R 8 20.0 16000 0099999 1.0000E12 250 21"));
  EXPECT_TRUE(EnterText(simulator, SimBox::kWaveL, "601"));
  EXPECT_FALSE(EnterText(simulator, SimBox::kWaveL, "190"));
  EXPECT_EQ(simulator.Text, text("R 8 20.0 16000 0099999 1.0000E12 190 21"));
  // The first occurrence counts, wherever it stands.
  simulator.Text = simulator.SimHeader + " is new\r\n" + AfterFirstLine(simulator.Text);
  ChooseFileKind(simulator, SimFileKind::kIP8);
  EXPECT_EQ(FirstLine(simulator.Text), "P 8 20.0 16000 0099999 1.0000E12 675 21 is new");
  EXPECT_EQ(AfterFirstLine(simulator.Text),
            AfterFirstLine(text("R 8 20.0 16000 0099999 1.0000E12 190 21")));
}
