// Faults caught here: names made from the wrong header, a wrong order of files, and a binary file
// that slips in or is refused at the wrong door.
#include "scan/loading.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/files.h"
#include "scan/file_list.h"
#include "scan/preview.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

using Names = std::vector<std::string>;

constexpr std::array<bool, 4> kAll = {true, true, true, true};
constexpr ScanLoadSettings kSixChannels = {FileKind::kIpRa, Centerpiece::kSixChannels, kAll};

// 20 rows in the middle of each channel of a 6-channel cell.
const std::string kSixRows = Rows(5.90, 0.005, 20) + Rows(6.40, 0.005, 20) + Rows(6.90, 0.005, 20);

}  // namespace

TEST(LoadSelectedFile, RefusesBinaryFilesWhereAMultipleLoadDoesNot) {
  Session s;
  const auto path = s.folder.Write("a.RA1", ScanText(kSixRows, kHeader, "a\tcomment"));
  EXPECT_EQ(LoadSelectedFile(s.store, {}, path, s.host).outcome, LoadOutcome::kBinary);
  EXPECT_EQ(LoadBlankFile(s.store, FileKind::kIpRa, path, s.host).outcome, LoadOutcome::kBinary);
  EXPECT_EQ(s.store.NumDatasets(), 0);
  ASSERT_EQ(s.host.messages.size(), 2u);
  EXPECT_EQ(s.host.messages[0].title, "Invalid Data File");
  EXPECT_EQ(s.host.messages[0].text, PathText(path) + " is a binary file!");
  EXPECT_EQ(LoadNamedFile(s.store, {}, path, s.host).outcome, LoadOutcome::kLoaded);
}

// Kept on purpose: only the kind "IP,RA" looks into the file for its name.
TEST(LoadNamedFile, NamesOtherKindsByTheHeaderOfTheSelection) {
  Session s;
  const auto load = [&](FileKind kind, const char* name) {
    const auto path = s.folder.Write(name, ScanText(kSixRows, std::string("  ") + kHeader));
    LoadNamedFile(s.store, {kind}, path, s.host);
  };
  s.store.HeaderLine = "F 8 20.0 30000 0099999 1.0000E12 488 21";
  load(FileKind::kIpRa, "00012.RA3");
  load(FileKind::kFi, "B00012.FI3");
  s.store.HeaderLine = "E                     1234567";
  load(FileKind::kEl, "run.EL1");
  EXPECT_EQ(NamesOf(s.store), (Names{"12_3A20280.dat", "12_8B30488.dat", "run_1A01234.EL1"}));
}

// Channel A overflows, B and C are empty: the command line called the file short, not unreadable.
TEST(LoadNamedFile, ReportsTheWorstOutcomeOfItsChannels) {
  Session s;
  const auto path = s.folder.Write("a.RA1", ScanText(Rows(5.7, 0.0002, 2049)));
  EXPECT_EQ(LoadNamedFile(s.store, kSixChannels, path, s.host).outcome, LoadOutcome::kUnreadable);
}

TEST(LoadNamedFiles, GoesOnInTheOrderOfTheNamesAndNamesWhatIsOddAboutThem) {
  Session s;
  std::vector<std::filesystem::path> paths;
  for (const char* name : {"00010.RA1", "00009.RA1", "B.RA1", "a.RA1"}) {
    paths.push_back(s.folder.Write(name, ScanText(kSixRows)));
  }
  LoadNamedFiles(s.store, {}, paths, s.host);
  EXPECT_TRUE(s.host.messages.empty());
  paths.push_back(s.folder.Write("c.RA1", ScanText(kSixRows, "x, 20000, 280")));
  paths.push_back(s.folder.Write("d.pdf", "%PDF-1.4\n%\xE2\xE3\n1 0 obj\n<</Type /Catalog>>\n"));
  paths.push_back(s.folder.Write("e.RA1", ""));
  paths.push_back(s.folder / "f.RA1");  // is not there
  s.store.Datasets.clear();
  LoadNamedFiles(s.store, {}, paths, s.host);
  EXPECT_EQ(NamesOf(s.store), (Names{"9_3A20280.dat", "10_3A20280.dat", "B_3A20280.dat",
                                     "a_3A20280.dat", NamesOf(s.store).back()}));
  const std::string odd = s.host.messages.back().text;  // once, behind what the loads said
  EXPECT_EQ(std::count(odd.begin(), odd.end(), '\n'), 3);
  for (const char* name :
       {"c.RA1: Line 2 does not look", "d.pdf: ", "e.RA1: ends", "f.RA1: there"}) {
    EXPECT_NE(odd.find(name), std::string::npos) << odd;
  }
}

TEST(LoadDroppedFiles, NamesWhatIsNoScanInOneMessage) {
  Session s;
  std::vector<std::filesystem::path> paths(11, s.folder.path());
  paths.push_back(s.folder.Write("b.RA1", ScanText(kSixRows)));
  paths.push_back(s.folder.Write("c.RA1", ScanText(kSixRows, "no header")));
  LoadDroppedFiles(s.store, {}, paths, s.host);
  EXPECT_EQ(s.store.NumDatasets(), 2);
  ASSERT_EQ(s.host.messages.size(), 1u);
  EXPECT_EQ(s.host.messages[0].title, "Invalid Data File");
  EXPECT_TRUE(s.host.messages[0].text.ends_with(": is a folder\r\nand 2 more"));
}

TEST(ListScanFiles, MatchesByKindWithoutRegardToCase) {
  Session s;
  std::filesystem::create_directory(s.folder / "folder.RA1");
  std::error_code ignored;  // not every system has links
  std::filesystem::create_symlink("nowhere", s.folder / "link.RA1", ignored);
  for (const char* name : {"b.ip1", "A.Ra3", "x.DAT", "y.dat.bak", "c.fi2", "e.EL1", "ip"}) {
    s.folder.Write(name, "");
  }
  const std::pair<FileKind, Names> cases[] = {{FileKind::kIpRa, {"A.Ra3", "b.ip1"}},
                                              {FileKind::kDat, {"x.DAT"}},
                                              {FileKind::kFi, {"c.fi2"}},
                                              {FileKind::kEl, {"e.EL1"}}};
  for (const auto& [kind, names] : cases) EXPECT_EQ(ListScanFiles(s.folder.path(), kind), names);
  s.folder.Write(".hidden", "");
  EXPECT_EQ(ListScanFiles(s.folder.path(), std::nullopt).size(), 7U);
  EXPECT_THROW(ListScanFiles(s.folder / "missing", FileKind::kDat), FileFault);
}

// Kept on purpose: the last row is left out, and further comment lines do no harm here.
TEST(PreviewFile, ShowsAllRowsButTheLast) {
  Session s;
  const auto preview = [&](const std::string& text) {
    return PreviewFile(s.folder.Write("a.RA1", text), s.host);
  };
  const auto chart =
      preview("comment\nnot a header\n" + ScanText(Rows(5.0, 0.1, 30), kHeader, "x"));
  ASSERT_TRUE(chart);
  const ChartSeries& series = chart->panels[0].series[0];
  EXPECT_EQ(series.x.size(), 29u);  // no radial window
  EXPECT_EQ(series.x[1], static_cast<double>(5.1F));
  EXPECT_EQ(series.y[1], 0.25);
  EXPECT_FALSE(preview(ScanText(Rows(6.0, 0.1, 9))));
  EXPECT_EQ(s.host.messages.back().text,
            "Fewer than 10 points were found for this dataset.\r\n  This dataset will not be "
            "previewed");
  for (const std::string& text : {std::string("no header\n") + Rows(6.0, 0.1, 20),
                                  ScanText(Rows(6.0, 0.0001, 2049)), std::string()}) {
    EXPECT_FALSE(preview(text));
    EXPECT_EQ(s.host.messages.back().text,
              "An error occurred trying to read this dataset.\r\nThis dataset cannot be previewed");
  }
}
