// Faults caught here: a scan under the name of another, a cell or speed that its header does not
// say, noise shared by two scans, half a series left behind.
#include "sim/sim_series.h"

#include <gtest/gtest.h>

#include <map>

#include "base/files.h"
#include "support/recording_host.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

SimInputs InputsOf(int model) {
  SimInputs inputs = DefaultInputs();
  inputs.model = model;
  inputs.saveAs = SimFileKind::kRA8;
  return inputs;
}

std::map<std::string, std::string> Texts(const SeriesPlan& plan, std::uint64_t seed) {
  RecordingHost host;
  std::map<std::string, std::string> texts;
  EXPECT_EQ(RunSeries(plan, seed, host,
                      [&](const SeriesScan& scan, const Simulator& run, const SimReference&) {
                        texts[scan.file] = run.Text;
                      }),
            "");
  return texts;
}

}  // namespace

TEST(PlanSeries, NamesScansAsAnInstrumentDoes) {
  const SeriesPlan plan = PlanSeries(
      InputsOf(6), {ListedEntries(" 10000,14000 "), ListedEntries("1e-6; 2e-6"), {"3e-6"}});
  std::string scans;
  for (const SeriesScan& scan : plan.scans) {
    scans += scan.file + " " + scan.inputs.Text(SimBox::kSpeed) + " " +
             scan.inputs.Text(SimBox::kLoadC) + " " + scan.inputs.Text(SimBox::kLoadCB) + "\n";
  }
  EXPECT_EQ(scans,
            "00001.RA1 10000 1e-6 3e-6\n00001.RA2 10000 2e-6 3e-6\n"
            "00002.RA1 14000 1e-6 3e-6\n00002.RA2 14000 2e-6 3e-6\n");
}

TEST(PlanSeries, RefusesListsThatMakeNoSeries) {
  const std::vector<std::string> nine(9, "1e-6");
  const struct {
    int model;
    SeriesLists lists;
    SimBox box;
    const char* says;
  } cases[] = {
      {0, {{}, {"1e-6"}, {}}, SimBox::kSpeed, "1 to 99 speeds"},
      {0, {{"10000", "500"}, {"1e-6"}, {}}, SimBox::kSpeed, "500: The Speed must be"},
      {0, {{"10000"}, nine, {}}, SimBox::kLoadC, "1 to 8 cells"},
      {0, {{"10000"}, {"1e-6", "zero"}, {}}, SimBox::kLoadC, "zero: Loading concentration"},
      {0, {{"10000"}, {"1e-6"}, {"1", "2"}}, SimBox::kLoadCB, "no second component"},
      {6, {{"10000"}, {"1", "2"}, {"1", "2", "3"}}, SimBox::kLoadC, "as many loads"},
      {6, {{"10000"}, {"1"}, {}}, SimBox::kLoadCB, "1 to 8 cells"},
  };
  for (const auto& test : cases) {
    const SeriesPlan plan = PlanSeries(InputsOf(test.model), test.lists);
    EXPECT_TRUE(plan.scans.empty());
    EXPECT_EQ(plan.box, test.box) << test.says;
    EXPECT_NE(plan.refusal.find(test.says), std::string::npos) << plan.refusal;
  }
}

TEST(RunSeries, EachScanHasItsHeaderAndItsNoise) {
  const SeriesPlan four = PlanSeries(InputsOf(0), {{"10000", "14000"}, {"1e-6", "1e-6"}, {}});
  const auto texts = Texts(four, 5);
  ASSERT_EQ(texts.size(), 4U);
  EXPECT_NE(texts.at("00002.RA1").find("\r\nR 1 20.0 14000 0099999 1.0000E12 280 21\r\n"),
            std::string::npos);
  const auto rowsOf = [](const std::string& text) { return text.substr(text.find("\r\n   ")); };
  EXPECT_NE(rowsOf(texts.at("00001.RA1")), rowsOf(texts.at("00001.RA2")));  // the same loads
  // Another series with the same seed has the same noise in the scan that both have.
  const auto one = Texts(PlanSeries(InputsOf(0), {{"10000"}, {"1e-6"}, {}}), 5);
  EXPECT_EQ(one.at("00001.RA1"), texts.at("00001.RA1"));
  EXPECT_NE(Texts(four, 6).at("00001.RA1"), texts.at("00001.RA1"));
}

TEST(RunSeries, NamesTheScanThatFails) {
  SimInputs inputs = InputsOf(0);
  inputs.Text(SimBox::kMW) = "50000000";
  RecordingHost host;
  const SeriesPlan plan = PlanSeries(inputs, {{"1000", "60000"}, {"1e-6"}, {}});
  const std::string fault =
      RunSeries(plan, 1, host, [](const SeriesScan&, const Simulator&, const SimReference&) {});
  EXPECT_EQ(fault, "00002.RA1 (speed 60000, load 1e-6): Overflow");
  EXPECT_TRUE(host.messages.empty());
}

TEST(WriteSeries, WritesAllOrNothing) {
  const TempFolder folder;
  const std::vector<SeriesFile> files = {{"00001.RA1", "one"}, {"00001.RA2", "two"}};
  WriteSeries(folder / "new", files);
  EXPECT_EQ(ReadText(folder / "new" / "00001.RA2"), "two");
  std::filesystem::remove(folder / "new" / "00001.RA2");
  std::filesystem::create_directory(folder / "new" / "00001.RA2");
  EXPECT_THROW(WriteSeries(folder / "new", {{"00001.RA1", "other"}, {"00001.RA2", "two"}}),
               FileFault);
  EXPECT_EQ(ReadText(folder / "new" / "00001.RA1"), "one");
  folder.Write("file", "");
  EXPECT_THROW(WriteSeries(folder / "file", files), FileFault);
  int left = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "new")) {
    left += entry.exists();
  }
  EXPECT_EQ(left, 2);  // no folder of its own is left
}
