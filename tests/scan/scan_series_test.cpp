// Faults caught here: wavelengths grouped by their neighbours instead of the lowest, a series out
// of the order of time, a change over radii that only one scan has, a foreign file taken for a scan
// or named without its reason, a stop that is not obeyed.
#include "scan/scan_series.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "base/files.h"
#include "scan/file_list.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

using Wavelengths = std::vector<int>;

// A scan of the given header without a file.
ListedScan Listed(int cell, int speed, int wavelength, double hours = 0.0) {
  ListedScan scan;
  scan.facts.cell = cell;
  scan.facts.speed = speed;
  scan.facts.wavelength = wavelength;
  scan.facts.hours = hours;
  return scan;
}

// "2 280 10000: 1 2.5" a series, the hours of its scans behind.
std::vector<std::string> TextsOf(const std::vector<ScanSeries>& series) {
  std::vector<std::string> texts;
  for (const ScanSeries& one : series) {
    std::string text = std::to_string(one.cell) + " " + std::to_string(one.wavelength) + " " +
                       std::to_string(one.speed) + ":";
    for (const ListedScan& scan : one.scans) {
      text += " " + std::to_string(std::lround(10 * scan.facts.hours));
    }
    texts.push_back(text);
  }
  return texts;
}

std::string Header(int cell, int speed, int seconds, int wavelength) {
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), "R %d 20.5 %05d %07d 1.0000E12 %3d 21", cell, speed,
                seconds, wavelength);
  return text.data();
}

const StopFlag kGoOn;

}  // namespace

TEST(GroupScans, WavelengthsCountFromTheLowestOfTheirSeries) {
  const struct {
    Wavelengths wavelengths;
    Wavelengths borne;
    std::vector<std::size_t> sizes;
  } cases[] = {{{280, 279, 279}, {279}, {3}},
               {{284, 280, 280, 279}, {280}, {4}},
               {{275, 280, 285}, {275, 285}, {2, 1}},  // no chain of neighbours
               {{280, 286}, {280, 286}, {1, 1}},
               {{281, 280}, {280}, {2}}};  // as often: the lower one
  for (const auto& row : cases) {
    std::vector<ListedScan> scans;
    for (const int wavelength : row.wavelengths) scans.push_back(Listed(2, 10000, wavelength));
    const std::vector<ScanSeries> series = GroupScans(scans);
    ASSERT_EQ(series.size(), row.borne.size());
    for (std::size_t k = 0; k < series.size(); ++k) {
      EXPECT_EQ(series[k].wavelength, row.borne[k]);
      EXPECT_EQ(series[k].scans.size(), row.sizes[k]);
    }
  }
}

TEST(GroupScans, SeriesAndScansStandInTheirOrder) {
  const std::vector<ScanSeries> series = GroupScans(
      {Listed(2, 20000, 280, 3.0), Listed(2, 10000, 280, 2.5), Listed(1, 20000, 280),
       Listed(2, 10000, 281, 1.0), Listed(2, 10000, 230, 2.0), Listed(2, 10000, 280, 12.0)});
  EXPECT_EQ(TextsOf(series),
            (std::vector<std::string>{"1 280 20000: 0", "2 230 10000: 20", "2 280 10000: 10 25 120",
                                      "2 280 20000: 30"}));
  EXPECT_EQ(TextsOf(LastOfEach(series))[2], "2 280 10000: 120");
  EXPECT_TRUE(GroupScans({}).empty());
}

TEST(RmsChange, ComparesTheCommonRadiiAlone) {
  const ScanPoints before{{6.0, 6.1, 6.3}, {0.0, 0.1, 0.5}};
  const struct {
    ScanPoints after;
    RadiusLimits limits;
    std::optional<double> change;
  } cases[] = {
      {{{6.0, 6.1, 6.3}, {0.0, 0.1, 0.5}}, {}, 0.0},
      {{{6.05, 6.2}, {0.05, 0.3}}, {}, 0.0},                  // on the lines between the points
      {{{5.0, 6.05, 6.2, 7.0}, {9, 0.15, 0.4, 9}}, {}, 0.1},  // what lies outside does not count
      {{{6.3}, {0.7}}, {}, 0.2},
      {{{6.0, 6.1, 6.3}, {1.0, 0.1, 0.8}}, {6.2, 6.4}, 0.3},
      {{{6.31, 7.0}, {0.5, 0.5}}, {}, std::nullopt},
      {{{6.0}, {1e200}}, {}, std::nullopt},
      {{}, {}, std::nullopt}};
  for (const auto& row : cases) {
    const std::optional<double> change = RmsChange(before, row.after, row.limits);
    ASSERT_EQ(change.has_value(), row.change.has_value());
    if (change) {
      EXPECT_NEAR(*change, *row.change, 1e-12);
    }
  }
  EXPECT_FALSE(RmsChange({}, before));
}

TEST(ListScans, ForeignFilesAreNamedWithTheirReason) {
  const TempFolder folder;
  const std::string rows = Rows(6.0, 0.01, 20);
  const struct {
    const char* name;
    std::string text;
    const char* reason;  // after the path
  } cases[] = {{"a.RA1", "", ": is empty"},
               {"b.RA1", "one line", ": ends before its header line"},
               {"c.RA1", ScanText("\x01" + rows), " is a binary file!"},
               {"d.DAT", "x,y\r\n6.1,0.2\r\n" + rows, ": line 2 is no header"},
               {"e.RA1", ScanText(Rows(6.0, 0.01, 9)), ": has 9 points; a scan needs 10"},
               {"f.RA1", ScanText(rows + "   1E999\r\n"), ", line 23: a number is out of range"},
               {"g.RA1", ScanText(rows, "R 3 20.5 9E9   0099999 1.0000E12 280 21"),
                ", line 2: a number is out of range"},
               {"h.RA1", ScanText(rows + std::string(5 << 20, ' ')), ": is longer than"}};
  for (const auto& row : cases) folder.Write(row.name, row.text);
  folder.Write("scan.IP2", ScanText(rows, Header(2, 10000, 7200, 675)));
  folder.Write("readme.txt", ScanText(rows));
  std::filesystem::create_directory(folder / "folder.RA1");
  std::vector<std::filesystem::path> files = ScanFilesIn(folder.path());
  EXPECT_EQ(files.size(), std::size(cases) + 1);
  files.push_back(folder / "gone.RA1");
  const ScanList list = ListScans(files, std::nullopt, {.stop = kGoOn});
  ASSERT_EQ(list.foreign.size(), std::size(cases) + 1);
  for (std::size_t k = 0; k < std::size(cases); ++k) {
    EXPECT_EQ(list.foreign[k].reason.find(PathText(folder / cases[k].name) + cases[k].reason), 0U)
        << list.foreign[k].reason;
  }
  EXPECT_TRUE(list.foreign.back().reason.ends_with("gone.RA1: there is no such file"));
  ASSERT_EQ(list.series.size(), 1U);
  const ScanFacts& facts = list.series[0].scans.at(0).facts;
  EXPECT_EQ(facts.kind, FileKind::kIpRa);
  EXPECT_EQ(facts.points, 20);
  EXPECT_EQ(facts.hours, 2.0);
  EXPECT_EQ(facts.omega2t, 1e12);
  EXPECT_EQ(facts.temperature, 20.5);
  EXPECT_THROW(ScanFilesIn(folder / "nowhere"), FileFault);
}

TEST(ListScans, HeadersThatLieBeyondWhatLoadingReadsDoNoHarm) {
  const TempFolder folder;
  folder.Write("a.RA1", ScanText(Rows(6.0, 0.01, 20), "R 3 20.5 20000 9E99999 9.0E99999 280 21"));
  const ScanList list = ListScans({folder / "a.RA1"}, std::nullopt, {.stop = kGoOn});
  ASSERT_EQ(list.series.size(), 1U);
  EXPECT_EQ(list.series[0].scans[0].facts.hours, 0.0);
  EXPECT_EQ(list.series[0].scans[0].facts.omega2t, 0.0);
}

TEST(FindChanges, FillsLongSeriesAndToleratesAVanishedFile) {
  const TempFolder folder;
  constexpr int kCount = 150;  // more than one thread takes at a time
  std::vector<std::filesystem::path> files;
  for (int k = 0; k < kCount; ++k) {
    std::string rows;
    for (int row = 0; row < 12; ++row) rows += Row(6.0 + 0.01 * row, 0.001 * k);
    const std::string name = std::to_string(1000 + (k * 7) % kCount) + ".RA1";
    files.push_back(folder.Write(name, ScanText(rows, Header(1, 9000, 3600 * k, 280))));
  }
  ScanList list = ListScans(files, std::nullopt, {.stop = kGoOn});
  std::filesystem::remove(list.series.at(0).scans[100].facts.path);
  double last = 0.0;
  FindChanges(list.series, {.stop = kGoOn, .serve = [&](double share) { last = share; }});
  for (std::size_t k = 0; k < kCount; ++k) {
    const std::optional<double>& change = list.series[0].scans[k].change;
    EXPECT_EQ(change.has_value(), k != 0 && k != 100 && k != 101) << k;
    if (change) {
      EXPECT_NEAR(*change, 0.001, 1e-12);
    }
  }
  EXPECT_LE(last, 1.0);
  EXPECT_EQ(PlotChanges(list.series[0], 5.0).panels[0].series[0].x.size(), kCount - 3U);

  StopFlag stop;
  stop.Raise();
  EXPECT_TRUE(ListScans(files, std::nullopt, {.stop = stop}).series.empty());
}

TEST(ListScans, RealScansAreThreeSeries) {
  const std::filesystem::path folder =
      std::filesystem::path(QUORVANE_SOURCE_DIR) / ".." / "shared" / "data" / "real-scans";
  if (!DirExists(folder)) GTEST_SKIP() << "the real scans are not here";
  ScanList list = ListScans(ScanFilesIn(folder), std::nullopt, {.stop = kGoOn});
  FindChanges(list.series, {.stop = kGoOn}, {5.88, 6.07});
  EXPECT_EQ(TextsOf(LastOfEach(list.series)),
            (std::vector<std::string>{"2 279 10000: 189", "2 280 14000: 355", "2 280 20000: 464"}));
  const std::vector<ListedScan>& first = list.series[0].scans;
  EXPECT_LT(*first.back().change, *first[1].change);  // on its way to rest
}
