// Faults caught here: a decimal comma taken for a separator without a word, a row dropped in
// silence, a column read in place of another, numbers that the written scan does not give back.
#include "scan/text_import.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "scan/import_names.h"
#include "scan/scan_file.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

TextImport Understood(const std::string& text, const ImportChoices& choices = {},
                      const char* target = "00001.RA1") {
  return UnderstandText(text, choices, "folder/data.csv", target);
}

std::vector<double> Radii(const TextImport& import) {
  std::vector<double> radii;
  for (const ImportedRow& row : import.rows) radii.push_back(row.r);
  return radii;
}

// Rows of `format` with %1 for the radius and %2 for the signal, decimals with `sign`.
std::string Table(const std::string& format, char sign, int rows = 12) {
  std::string text;
  for (int k = 0; k < rows; ++k) {
    for (const char c : format) {
      if (c != 'r' && c != 's') text += c;
      const std::string digits = std::to_string(100 + k).substr(1);
      if (c == 'r') text += std::string("6") + sign + digits;
      if (c == 's') text += std::string("0") + sign + "1" + digits;
    }
  }
  return text;
}

bool HasRemark(const TextImport& import, const std::string& part) {
  for (const std::string& remark : import.remarks) {
    if (remark.find(part) != std::string::npos) return true;
  }
  return false;
}

}  // namespace

TEST(UnderstandText, FindsSeparatorAndDecimalSign) {
  const struct {
    std::string text;
    const char* form;
    int columns;
  } cases[] = {
      {Table("r,s\n", '.'), "comma point", 2},
      {Table("r,s,,\r\n", '.'), "comma point", 2},
      {"\xEF\xBB\xBFRadius (cm);Signal\r\n" + Table("r;s\r\n", ','), "semicolon comma", 2},
      {Table("r;s\n", '.'), "semicolon point", 2},
      {Table("r\ts\r", '.'), "TAB point", 2},
      {Table("r\t\ts\t0\n", ',') + "6,5\t\t1,5\t0\n", "TAB comma", 4},
      {Table("  r   s  \n", ','), "blanks comma", 2},
      {Table("r \t s\n", '.'), "TAB point", 2},
      {Table("\"r\",\"s\"\n", ','), "comma comma", 2},
      {Table("r; s ;\"a;b\"\n", ','), "semicolon comma", 3},
  };
  for (const auto& test : cases) {
    ImportChoices choices;
    if (test.columns == 4) choices.signal = 3;
    const TextImport import = Understood(test.text, choices);
    ASSERT_EQ(import.state, ImportState::kReady) << test.text << import.fault;
    EXPECT_EQ(std::string(NameOf(import.form.separator)) + " " + NameOf(import.form.decimal),
              test.form);
    EXPECT_EQ(import.width, test.columns) << test.text;
    ASSERT_GE(import.rows.size(), 12U);
    EXPECT_EQ(import.rows[11].r, 6.11);
    EXPECT_EQ(import.rows[11].c, 0.111);
    EXPECT_TRUE(import.unreadable.empty());
  }
}

TEST(UnderstandText, RefusesWhatItCannotDecide) {
  const auto chosen = [](auto set) {
    ImportChoices choices;
    set(choices);
    return choices;
  };
  const struct {
    std::string text;
    ImportChoices choices;
    ImportState state;
    const char* says;
  } cases[] = {
      {Table("r,s\n", ','), {}, ImportState::kAmbiguous, "choose the decimal sign"},
      {Table("r,s\n", ','), chosen([](auto& c) { c.form.decimal = DecimalSign::kComma; }),
       ImportState::kUnreadable, "a comma cannot be separator and decimal sign"},
      {"", {}, ImportState::kUnreadable, "the file is empty"},
      {std::string("6.1,1\n\0", 7), {}, ImportState::kUnreadable, "binary"},
      {"\xFF\xFE"
       "6",
       {},
       ImportState::kUnreadable,
       "UTF-16"},
      {"radius,signal\n", {}, ImportState::kUnreadable, "no line has a number in each"},
      {Table("r,nan\n", '.'), {}, ImportState::kUnreadable, "columns 1, 2"},
      {Table("r,s\n", '.'), chosen([](auto& c) { c.error = 3; }), ImportState::kBadChoice,
       "there is no column 3; the rows have 2"},
      {Table("r,s\n", '.'), chosen([](auto& c) { c.error = 2; }), ImportState::kBadChoice,
       "column 2 cannot serve twice"},
      {Table("r,s\n", '.'), chosen([](auto& c) { c.skip = 12; }), ImportState::kBadChoice,
       "there are only 12 lines"},
      {Table("r,s\n", '.'), chosen([](auto& c) { c.radius = 0; }), ImportState::kBadChoice,
       "counted from 1"},
      {Table("r,s\n", '.'), chosen([](auto& c) { c.cell = 9; }), ImportState::kBadChoice, "1 to 8"},
      {Table("r,s\n", '.'), chosen([](auto& c) { c.comment = std::string(201, 'c'); }),
       ImportState::kBadChoice, "at most 200"},
      {Table("2r,s\n", '.'), {}, ImportState::kNoScan, "go from 26 to 26.11; a radius lies"},
      {Table("r,s\n", '.') + Table("r,s\n", '.'),
       {},
       ImportState::kNoScan,
       "begin again in line 13"},
      {"one\nW 1 20.0 3000 0 0 280 1\n" + Table("r s\n", '.'),
       {},
       ImportState::kNoScan,
       "header says W"},
      {Rows(5.9, 0.0001, 2049), {}, ImportState::kNoScan, "2049 rows; a scan holds at most 2048"},
  };
  for (const auto& test : cases) {
    const TextImport import = Understood(test.text, test.choices);
    EXPECT_EQ(import.state, test.state) << test.says << " | " << import.fault;
    EXPECT_NE(import.fault.find(test.says), std::string::npos) << import.fault;
  }
  const TextImport folder = UnderstandFile(".", {}, "x.RA1");
  EXPECT_EQ(folder.state, ImportState::kUnreadable);
  EXPECT_FALSE(folder.fault.empty());
}

TEST(UnderstandText, NamesEveryRowThatItLeavesOut) {
  const TextImport import = Understood(
      "run 5\n6.10,n.d.\n# a remark\n6.11,0.2\n6.12,inf\n"
      "6.13,0.4\n\n6.14\n60.15,0.6\n6.16,0.7,1\nend\n" +
      std::string(1 << 20, '9') + "\n6.17,0.8\n");
  ASSERT_EQ(import.state, ImportState::kReady) << import.fault;
  EXPECT_EQ(Radii(import), (std::vector<double>{6.11, 6.13, 6.17}));
  EXPECT_EQ(import.skipped, 1U);
  EXPECT_TRUE(HasRemark(import, "1 line among the rows"));
  EXPECT_TRUE(HasRemark(import, "Only 3 rows: a dataset needs 10."));
  const std::vector<std::string> texts = UnreadableTexts(import);
  ASSERT_EQ(texts.size(), 7U);
  EXPECT_EQ(texts[0], "line 2: signal \"n.d.\" is no number");
  EXPECT_EQ(texts[2], "line 8: signal is missing");
  EXPECT_EQ(texts[3], "line 9: radius 60.15 lies outside 1 to 20 cm");
  EXPECT_EQ(texts[4], "line 10: has 3 columns, the others have 2");
  EXPECT_TRUE(texts[6].starts_with("line 12: radius \"99")) << texts[6].substr(0, 40);
  EXPECT_LT(texts[6].size(), 80U);
}

TEST(UnderstandText, TakesColumnsByHeadingsAndChoices) {
  const std::string table = "sample,A280,Radius (cm),Std. dev.\n" + Table("x,s,r,0.01\n", '.');
  TextImport import = Understood(table);
  ASSERT_EQ(import.state, ImportState::kReady) << import.fault;
  EXPECT_EQ(import.columns.radius, 3);
  EXPECT_EQ(import.columns.signal, 2);
  EXPECT_EQ(import.columns.error, 4);
  EXPECT_EQ(import.rows[0].err, 0.01);
  ImportChoices choices;
  choices.error = 0;
  EXPECT_FALSE(Understood(table, choices).columns.error);
  import = Understood(Table("r s 0.02\n", '.'));  // a third column alone says nothing
  EXPECT_FALSE(import.columns.error);
  EXPECT_TRUE(HasRemark(import, "not used: 3"));
  import = Understood("6.3 3\n6.2 2\n6.1 1\n");
  EXPECT_EQ(Radii(import), (std::vector<double>{6.1, 6.2, 6.3}));
  EXPECT_TRUE(HasRemark(import, "The radii fall"));
}

TEST(UnderstandText, IntensitiesBecomeAbsorbance) {
  ImportChoices choices;
  choices.reference = 3;
  choices.error = 4;
  const TextImport import =
      Understood("6.1;100;1000;2\n6.2;250;1000;2\n6.3;0;1000;2\n6.4;10;-1;2\n", choices);
  ASSERT_EQ(import.rows.size(), 2U) << import.fault;
  EXPECT_EQ(import.rows[0].c, 1.0);
  EXPECT_NEAR(import.rows[1].c, 0.6020599913279624, 1e-15);  // log10 4
  EXPECT_NEAR(import.rows[0].err, 2.0 / 100.0 / std::log(10.0), 1e-15);
  EXPECT_EQ(UnreadableTexts(import),
            (std::vector<std::string>{"line 3: intensity 0 is not above 0",
                                      "line 4: intensity -1 is not above 0"}));
}

TEST(UnderstandText, HeaderOfChoicesThenOfTheTextThenOfDefaults) {
  const std::string rows = Table("r;s;0,01\n", ',');
  const std::string header = "my \xC3\xA9t\xC3\xA9\t1\nP;3;20,5;14000;0006942;7,0870E09;230;32\n";
  TextImport import = Understood(header + rows);
  EXPECT_EQ(import.header, (ScanHeader{'P', 3, 20.5, 14000.0, 6942.0, 7.087e9, 230.0}));
  EXPECT_EQ(import.comment, "my \xC3\xA9t\xC3\xA9 1");
  EXPECT_EQ(import.columns.error, 3);  // the third column of a scan
  ImportChoices choices;
  choices.kind = 'R';
  choices.cell = 2;
  choices.speed = 10000.0;
  choices.wavelength = 280.0;
  choices.temperature = 4.0;
  choices.comment = "typed";
  import = Understood(header + rows, choices);
  EXPECT_EQ(import.header, (ScanHeader{'R', 2, 4.0, 10000.0, 6942.0, 7.087e9, 280.0}));
  EXPECT_EQ(import.comment, "typed");
  import = Understood(rows, {}, "00007.IP5");
  EXPECT_EQ(import.header, (ScanHeader{'P', 5, 20.0, 0.0, 0.0, 0.0, 0.0}));
  EXPECT_EQ(import.comment, "data.csv");
  EXPECT_TRUE(HasRemark(import, "cell 5, speed 0, wavelength 0, temperature 20"));
  import = Understood("lies\nR;12;20,5;200000;0;0;280;1\n" + rows);
  EXPECT_EQ(import.header.speed, 0.0);
  EXPECT_EQ(import.header.cell, 1);
  EXPECT_TRUE(HasRemark(import, "The header's cell 12"));
}

TEST(ScanFileOf, LoadsWithTheSameNumbers) {
  TextImport import;
  import.header = {'R', 4, 4.5, 3000.0, 86400.0, 1.5e11, 280.0};
  import.comment = "a comment";
  import.rows = {{1, 5.123456, 1.2345678e-3, 0.0},
                 {2, 9.999999, -9.8765432, 0.0123},
                 {3, 12.5, -1.2345678e-120, -0.01},
                 {4, 13.0, 9.876543e+200, 1e-9},
                 { 5,
                   14.0,
                   0.0,
                   0.004 }};
  std::istringstream in(ScanFileOf(import));
  const Dataset dataset = ReadDataset(FileKind::kIpRa, in, "x", 0.0F, 100.0F);
  EXPECT_EQ(dataset.Speed, 3000);
  EXPECT_EQ(dataset.Wavelength, 280);
  EXPECT_EQ(dataset.Temperature, 4.5F);
  EXPECT_EQ(CellNumber(dataset.Comment2.View()), 4);
  EXPECT_EQ(Comment2Of(dataset), "R 4 04.5 03000 0086400 1.5000E11 280 00");
  ASSERT_EQ(dataset.NumPoints, 5);
  for (std::size_t k = 0; k < 5; ++k) {
    const ImportedRow& row = import.rows[k];
    EXPECT_NEAR(dataset.R[k], row.r, 5e-7);
    EXPECT_NEAR(dataset.C[k], row.c, 5e-7 * std::fabs(row.c));
    EXPECT_NEAR(dataset.Err[k], row.err == 0.0 ? 1.0 : row.err, 5e-8 * std::fabs(row.err));
    EXPECT_EQ(dataset.Good[k], row.err < 0.0 ? kFalse : kTrue);
  }
}

TEST(ScanNamesFor, NeverNamesATextOrOneFileTwice) {
  const TempFolder folder;
  folder.Write("00001.RA1", "x");
  const std::vector<NamedText> texts = {{folder / "00001.RA1", {'R', 1}},
                                        {folder / "a" / "run.csv", {'P', 2}},
                                        {folder / "b" / "Run.txt", {'P', 2}},
                                        {folder / "run.csv", {'F', 2}}};
  std::vector<std::string> names;
  for (const auto& name : ScanNamesFor(texts, folder.path())) names.push_back(name.string());
  EXPECT_EQ(names, (std::vector<std::string>{"00001-2.RA1", "run.IP2", "Run-2.IP2", "run.FI2"}));
}
