// Faults caught here: anything in which the instrument's own files differ from made-up ones. Names
// and counts were worked out by a separate script that splits the rows at blanks.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "scan/loading.h"
#include "support/recording_host.h"

using namespace quorvane;

TEST(RealScans, LoadAsSixChannels) {
  const std::filesystem::path folder =
      std::filesystem::path(QUORVANE_SOURCE_DIR) / ".." / "shared" / "data" / "real-scans";
  if (!std::filesystem::is_directory(folder)) {
    GTEST_SKIP() << "the real scans are not there: " << folder;
  }
  const struct {
    const char *file, *base, *ending;
    int points[3];
    double first, last;  // radii of channel A, cm
  } scans[] = {
      {"00002.RA2", "2", "10279", {150, 164, 129}, 5.7, 6.298},
      {"00003.RA2", "3", "10280", {162, 171, 132}, 5.7, 6.3},
      {"00004.RA2", "4", "10279", {155, 168, 128}, 5.7, 6.298},
      {"00005.RA2", "5", "10279", {139, 148, 126}, 5.701, 6.297},
      {"00007.RA2", "7", "10279", {144, 154, 128}, 5.7, 6.297},
      {"00009.RA2", "9", "10279", {151, 159, 128}, 5.701, 6.298},
      {"00012.RA2", "12", "10279", {158, 171, 130}, 5.703, 6.298},
      {"00015.RA2", "15", "10279", {146, 159, 125}, 5.702, 6.297},
      {"00018.RA2", "18", "10279", {136, 157, 165}, 5.7, 6.3},
      {"00019.RA2", "19", "10279", {144, 190, 176}, 5.701, 6.297},
      {"00032.RA2", "32", "14280", {142, 152, 127}, 5.702, 6.297},
      {"00043.RA2", "43", "20280", {158, 167, 125}, 5.701, 6.3},
  };
  DatasetStore store;
  RecordingHost host;
  const ScanLoadSettings six = {FileKind::kIpRa, Centerpiece::kSixChannels, {true, true, true}};
  for (const auto& scan : scans) {
    ASSERT_EQ(LoadNamedFile(store, six, folder / scan.file, host).datasets, 3) << scan.file;
    for (std::size_t c = 0; c < 3; ++c) {
      const Dataset& d = store.Datasets[store.Datasets.size() - 3 + c];
      const std::string name = std::string(scan.base) + "_2" + "ABC"[c] + scan.ending + ".dat";
      EXPECT_EQ(NameOf(d), name);
      EXPECT_EQ(d.NumPoints, scan.points[c]) << name;
      EXPECT_EQ(CountGoodPoints(d), d.NumPoints);
      EXPECT_EQ(d.Temperature, 20.0F);
      EXPECT_EQ(d.Speed / 1000, std::stoi(std::string(scan.ending).substr(0, 2)));
    }
    EXPECT_EQ(store.Datasets[store.Datasets.size() - 3].Rmen, scan.first);
    EXPECT_EQ(store.Datasets[store.Datasets.size() - 3].Rbase, scan.last);
  }
  EXPECT_EQ(store.NumDatasets(), 36);
  EXPECT_TRUE(host.failures.empty() && host.messages.empty());
}
