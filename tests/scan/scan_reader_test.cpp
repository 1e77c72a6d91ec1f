// Faults caught here: a column or window bound off by one, a limit of points off by one, a header
// number that wraps round, and a given-up file that leaves traces in the store.
#include "scan/scan_file.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "base/files.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

struct Loader : Session {
  LoadOutcome Load(const std::string& text, FileKind kind = FileKind::kIpRa, float low = 5.6F,
                   float high = 7.3F) {
    return LoadPath(folder.Write("scan.RA1", text), kind, low, high);
  }
  LoadOutcome LoadPath(const std::filesystem::path& path, FileKind kind = FileKind::kIpRa,
                       float low = 5.6F, float high = 7.3F) {
    return LoadDataFile(store, kind, path, "name.dat", {low, high}, host);
  }
  const Dataset& Last() const { return store.Datasets.back(); }
};

}  // namespace

TEST(LoadDataFile, TakesEachFieldFromItsColumns) {
  Loader loader;
  const std::string rows = Row(6.0, -0.5, 0.02) + Row(6.05, 1.5e-3, -0.03) + Row(6.1, 0.0, 0.0) +
                           Row(5.5999) + Row(7.3001) + Rows(6.2, 0.01, 8);
  ASSERT_EQ(loader.Load(ScanText(rows)), LoadOutcome::kLoaded);
  const Dataset& d = loader.Last();
  const std::string path = PathText(loader.folder / "scan.RA1");
  EXPECT_EQ(NameOf(d), "name.dat");
  EXPECT_EQ(PathOf(d), path);
  EXPECT_EQ(Comment1Of(d), "a comment :: " + path);
  EXPECT_EQ(Comment2Of(d), kHeader);
  EXPECT_TRUE(d.Speed == 20000 && d.Wavelength == 280 && d.Temperature == 20.5F);
  EXPECT_EQ(d.NumPoints, 11);
  const struct {
    double r, c, err;
    std::int16_t good;
  } points[] = {{6.0, -0.5, 0.02, kTrue}, {6.05, 1.5e-3, -0.03, kFalse}, {6.1, 0.0, 1.0, kTrue}};
  for (std::size_t k = 0; k < std::size(points); ++k) {
    EXPECT_EQ(d.R[k], points[k].r);
    EXPECT_EQ(d.C[k], points[k].c);
    EXPECT_EQ(d.Err[k], points[k].err);
    EXPECT_EQ(d.Good[k], points[k].good);
  }
  EXPECT_EQ(d.Rmen, 6.0);
  EXPECT_EQ(d.Rbase, 6.27);
  EXPECT_EQ(d.RefRadius, 6.18F);
  EXPECT_EQ(CountGoodPoints(d), 10);
  EXPECT_TRUE(d.RefConc == 0.5 && d.RefConc2 == 0.5 && d.Offset == 0.0 && d.Edited == 0.0);
  EXPECT_TRUE(d.ExtCoeff == 1.0 && d.ExtCoeff2 == 1.0 && d.ALoad == 1e-6 && d.BLoad == 1e-6);
  EXPECT_EQ(loader.host.lines,
            std::vector<std::string>{"Source:: " + path + "\r\nDataset #1:: name.dat\r\n"});
  EXPECT_TRUE(loader.host.failures.empty());
}

TEST(LoadDataFile, NeedsTenPoints) {
  Loader loader;
  // Deleted points and a last line without its end count; a blank line in a radial window doesn't.
  std::string ten = Row(6.0, 0.1, -1.0) + Rows(6.1, 0.01, 9);
  ten.resize(ten.size() - 2);
  EXPECT_EQ(loader.Load(ScanText(ten)), LoadOutcome::kLoaded);
  EXPECT_EQ(loader.Load(ScanText(Rows(6.1, 0.01, 9) + "\r\n")), LoadOutcome::kTooFewPoints);
  EXPECT_EQ(loader.store.NumDatasets(), 1);
  EXPECT_EQ(loader.host.lines.size(), 1u);
  ASSERT_EQ(loader.host.messages.size(), 1u);
  EXPECT_EQ(loader.host.messages[0].text,
            "Fewer than 10 points were found for the dataset name.dat.  This dataset will not be "
            "loaded");
  EXPECT_TRUE(loader.host.failures.empty());
}

TEST(LoadDataFile, ComparesItsBoundsInSinglePrecision) {
  Loader loader;
  // As doubles 6.3 and 6.83 lie outside [6.3F, 6.83F]; the second and the last row do as singles.
  std::string rows = "6.299999999\n6.2999995\n" + Row(6.3) + Row(6.83) + "6.830000001\n6.8300005\n";
  ASSERT_EQ(loader.Load(ScanText(rows + Rows(6.5, 0.01, 9)), FileKind::kIpRa, 6.30F, 6.83F),
            LoadOutcome::kLoaded);
  EXPECT_EQ(loader.Last().NumPoints, 13);
  EXPECT_EQ(loader.Last().R[0], 6.299999999);
  EXPECT_EQ(loader.Last().R[3], 6.830000001);
}

TEST(LoadDataFile, HoldsNoMoreThanItsPoints) {
  Loader loader;
  const std::string full = ScanText(Rows(6.0, 0.0005, 2048));
  EXPECT_EQ(loader.Load(full + Row(7.4)), LoadOutcome::kLoaded);
  EXPECT_EQ(loader.Last().NumPoints, 2048);
  EXPECT_EQ(loader.Load(full + Row(7.1)), LoadOutcome::kUnreadable);
  EXPECT_EQ(loader.store.NumDatasets(), 1);
  ASSERT_EQ(loader.host.failures.size(), 1u);
  EXPECT_NE(loader.host.failures[0].find("line 2051: more than 2048 rows"), std::string::npos);
}

TEST(LoadDataFile, ElHoldsTheSquareOfTheRadius) {
  Loader loader;
  const std::string header = "E 3 25.0 30000        280 nm";
  std::string rows;
  for (int k = 0; k < 9; ++k) rows += Row(2.0 + k);
  EXPECT_EQ(loader.Load(ScanText(rows + "\r\n" + Row(10.01), header), FileKind::kEl, 0.0F, 10.0F),
            LoadOutcome::kLoaded);
  const Dataset& d = loader.Last();
  EXPECT_EQ(d.NumPoints, 10);
  EXPECT_EQ(d.R[0], 2.0);
  EXPECT_EQ(d.R[8], std::sqrt(20.0));
  EXPECT_EQ(d.R[9], 0.0);  // the blank line
  EXPECT_EQ(d.Err[9], 1.0);
  EXPECT_EQ(d.Speed, 1);
  EXPECT_EQ(d.Temperature, 20.0F);
  EXPECT_EQ(d.Wavelength, 280);
}

// An "EL" row just below 0 passes the window as -0 and has no radius.
TEST(LoadDataFile, ElRowBelowZeroGivesNoRadiusThatIsNoNumber) {
  Loader loader;
  loader.Load(ScanText("-1E-60\n" + Rows(2.0, 0.1, 10)), FileKind::kEl, 0.0F, 10.0F);
  for (const Dataset& d : loader.store.Datasets) EXPECT_FALSE(std::isnan(d.R[0]));
}

TEST(LoadDataFile, GivesUpHeadersOutOfRange) {
  Loader loader;
  const auto load = [&](const char* header) {
    return loader.Load(ScanText(Rows(6.0, 0.01, 10), header));
  };
  for (const char* header : {"R 3 20.0 2E9   0099999 1.0000E12 9999", "R 3 1E38 20000", "",
                             "R 3 20.0 20000 0099999 1.0000E12 3E4"}) {
    EXPECT_EQ(load(header), LoadOutcome::kLoaded) << header;
  }
  for (const char* header :
       {"R 3 20.0 3E9", "R 3 1E39 20000", "R 3 20.0 20000 0099999 1.0000E12 4E4"}) {
    EXPECT_EQ(load(header), LoadOutcome::kUnreadable) << header;
  }
  EXPECT_EQ(loader.store.NumDatasets(), 4);
  EXPECT_EQ(loader.host.failures.size(), 3u);
  EXPECT_TRUE(loader.host.messages.empty());
}

// The exception of a stream whose read fails went past the trap of the load.
TEST(LoadDataFile, GivesUpAFileWhoseReadFails) {
  const std::filesystem::path unreadable = "/proc/self/mem";  // opens, and fails at its first byte
  if (!std::filesystem::exists(unreadable)) GTEST_SKIP() << "there is no " << unreadable;
  Loader loader;
  EXPECT_NO_THROW(loader.LoadPath(unreadable));
  EXPECT_NO_THROW(GetCommentLines(loader.store, unreadable, loader.host));
  EXPECT_EQ(loader.host.failures.size(), 2u);
}
