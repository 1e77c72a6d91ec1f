// Faults caught here: a check that warns of sound scans, one that stays silent where loading would
// read something else, one that changes or refuses what it looks at, limits of windows off by one.
#include "scan/file_check.h"

#include "base/files.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

using Sentences = std::vector<std::string>;

const ScanLoadSettings kSixChannels = {FileKind::kIpRa, Centerpiece::kSixChannels, {true, true}};

// 40 rows in each of the windows A and B of a 6-channel cell, none in both.
std::string TwoChannels() {
  return Rows(5.80, 0.005, 40) + Rows(6.40, 0.005, 40);
}

// The rows with `separator` between their words.
std::string Separated(const std::string& rows, char separator) {
  std::string text;
  for (const char c : rows) {
    if (c != ' ') {
      text += c;
    } else if (!text.empty() && text.back() != separator && text.back() != '\n') {
      text += separator;
    }
  }
  return text;
}

std::string Replaced(std::string text, char from, char to) {
  std::replace(text.begin(), text.end(), from, to);
  return text;
}

// "Speed: 20000 rpm|2000 rpm*" of each row, * where the readings differ.
std::string RowText(const FileCheck& check, const std::string& label) {
  for (const CheckRow& row : CheckRows(check)) {
    if (row.label == label) return row.columns + "|" + row.words + (row.differs ? "*" : "");
  }
  return "no such row";
}

TEST(CheckFile, ShowsBothReadingsOfASoundScan) {
  const Session session;
  const FileCheck check =
      CheckFile(session.folder.Write("00001.RA3", ScanText(TwoChannels())), kSixChannels);
  EXPECT_EQ(check.fault, "");
  EXPECT_EQ(check.warnings, Sentences{});
  const char* const rows[][2] = {{"Kind", "IP,RA|R: absorbance"},
                                 {"Cell", "3|3"},
                                 {"Temperature", "20.5 deg C|20.5 deg C"},
                                 {"Speed", "20000 rpm|20000 rpm"},
                                 {"Wavelength", "280 nm|280 nm"},
                                 {"Points A/B", "40/40|40/40"},
                                 {"Radii, cm", "5.800 - 6.595|5.800 - 6.595"}};
  for (const auto& [label, text] : rows) EXPECT_EQ(RowText(check, label), text) << label;
}

// A file and the beginnings of the warnings that it brings.
struct WarnedFile {
  const char* what;
  std::string text;
  Sentences beginnings;
};

std::vector<WarnedFile> WarnedFiles() {
  const std::string rows = TwoChannels();
  const std::string exact = "5.80,0.25,0.01\r\n";
  return {{"commas",
           ScanText(Separated(rows, ',')),
           {"The rows are separated by commas", "Channel A: in line 3 loading reads ",
            "Channel B: in line 43 loading reads "}},
          {"semicolons",
           ScanText(Separated(rows, ';')),
           {"The rows are separated by commas", "Channel A: in line 3 loading reads ",
            "Channel B: in line 43 loading reads "}},
          {"decimal commas",  // the rows of B come out at a radius of 6, in A
           ScanText(Replaced(rows, '.', ',')),
           {"Numbers are written with a decimal comma",
            "Channel A: in line 3 loading reads radius 6, the words say 5.8; so in 40 of 40 rows.",
            "Channel B: loading finds 0 points in its window, the words of the rows say 40."}},
          {"a second comment",
           ScanText(std::string(kHeader) + "\r\n" + rows, "another comment"),
           {"The header stands in line 3, behind more than one comment line."}},
          {"no header", ScanText(rows, "one word"), {"Line 2 does not look like a header line"}},
          {"a shifted header",
           ScanText(rows, "R  3 20.5 20000 0099999 1.0000E12 280 21"),
           {"The header's columns are out of place. Loading reads cell 0, temperature 20 deg C, "
            "speed 52000 rpm, wavelength 228 nm; its words say 3, 20.5 deg C, 20000 rpm, 280 nm."}},
          {"a cell of two digits",
           ScanText(rows, "R 13 20.5 20000 0099999 1.0000E12 280 21"),
           {"The header's columns are out of place. Loading reads cell 1, "}},
          {"intensities",
           ScanText(rows, "I 3 20.5 20000 0099999 1.0000E12 280 21"),
           {"An intensity scan (header I)"}},
          {"fluorescence",
           ScanText(rows, "F 3 20.5 20000 0099999 1.0000E12 280 21"),
           {"The header says F: fluorescence, the file type is IP,RA"}},
          {"few points",
           ScanText(Rows(5.80, 0.005, 29) + Rows(6.40, 0.005, 9)),
           {"Channel A: only 29 points lie in its window.",
            "Channel B: only 9 points lie in its window; a dataset needs 10."}},
          {"just enough points", ScanText(Rows(5.80, 0.005, 30) + Rows(6.40, 0.005, 30)), {}},
          {"a row of its own",
           ScanText(rows + exact),
           {"The rows are separated by commas",
            "Channel A: in line 83 loading reads signal 0.01, the words say 0.25; so in 1 of 41 "
            "rows."}}};
}

TEST(CheckFile, WarnsWhereLoadingReadsSomethingElse) {
  const Session session;
  for (const WarnedFile& test : WarnedFiles()) {
    const auto path = session.folder.Write("00001.RA3", test.text);
    const FileCheck check = CheckFile(path, kSixChannels);
    EXPECT_EQ(check.fault, "") << test.what;
    EXPECT_EQ(check.warnings.size(), test.beginnings.size()) << test.what;
    for (std::size_t k = 0; k < std::min(check.warnings.size(), test.beginnings.size()); ++k) {
      EXPECT_TRUE(check.warnings[k].starts_with(test.beginnings[k]))
          << test.what << ": " << check.warnings[k];
    }
    EXPECT_EQ(ReadText(path), test.text);
  }
}

TEST(CheckFile, LivesWithAnyFile) {
  const Session session;
  const auto write = [&](const char* name, const std::string& text) {
    return session.folder.Write(name, text);
  };
  std::filesystem::create_directory(session.folder / "inner");
  std::string endless;
  while (endless.size() < 3U << 20) endless += Rows(5.50, 0.0, 1000);
  const struct {
    std::filesystem::path path;
    std::string fault;  // its end
  } cases[] = {
      {session.folder / "inner", "inner: is a folder"},
      {session.folder / "gone.RA3", "gone.RA3: there is no such file"},
      {write("empty.RA3", ""), "empty.RA3: ends before its comment line"},
      {write("short.RA3", "a comment\r\n"), "short.RA3: ends before its header line"},
      {write("byte.RA3", "\x01"), "byte.RA3: ends before its header line"},
      {write("binary.RA3", std::string(300, '\x01')), "binary.RA3 is a binary file!"},
      {write("tab.RA3", ScanText(Replaced(TwoChannels(), ' ', '\t'))), "tab.RA3 is a binary file!"},
      {write("much.RA3", ScanText(Rows(5.80, 0.0, 2049))),
       "much.RA3, line 2051: more than 2048 rows lie in the radial window"},
      {write("huge.RA3", ScanText(TwoChannels() + Row(5.9, 1e300) + "1E999")),
       "huge.RA3, line 84: a number is out of range"},
      {write("one line.RA3", std::string(3U << 20, 'x')),
       "one line.RA3: ends before its comment line"},
      {write("endless.RA3", ScanText(TwoChannels() + endless)), ""}};
  for (const auto& test : cases) {
    const FileCheck check = CheckFile(test.path, kSixChannels);
    EXPECT_TRUE(test.fault.empty() ? check.fault.empty() : check.fault.ends_with(test.fault))
        << test.path << ": " << check.fault;
  }
  EXPECT_EQ(CheckFile(session.folder / "endless.RA3", kSixChannels).warnings,
            Sentences{"The file is longer than one megabyte: only its start was checked."});
}

TEST(CheckFile, FindsNothingInRealScans) {
  const std::filesystem::path folder = "/work/shared/data/real-scans";
  if (!DirExists(folder)) GTEST_SKIP() << folder << " is not there";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const FileCheck check =
        CheckFile(entry.path(), {FileKind::kIpRa, Centerpiece::kSixChannels, {true, true, true}});
    EXPECT_EQ(check.fault, "");
    EXPECT_EQ(check.warnings, Sentences{}) << entry.path();
  }
}

TEST(TemperatureDrift, ToleratesOneDegree) {
  std::vector<Dataset> loaded(2, MakeDataset("a.dat", {6.0}));
  loaded[0].Temperature = 20.0F;
  loaded[1].Temperature = 21.0F;
  EXPECT_EQ(TemperatureDrift({}, 5.0), "");
  EXPECT_EQ(TemperatureDrift(loaded), "");
  EXPECT_EQ(TemperatureDrift(loaded, 20.5), "");
  EXPECT_TRUE(TemperatureDrift(loaded, 4.0)
                  .starts_with("With this file the loaded scans span 4.0 "
                               "to 21.0 deg C."));
  loaded[1].Temperature = 21.1F;
  EXPECT_TRUE(TemperatureDrift(loaded, 4.0)
                  .starts_with("The loaded scans were taken at 20.0 to "
                               "21.1 deg C."));
}

}  // namespace
