// Faults caught here: a header value lost on its way to the file, an input file overwritten, a
// refusal with the status of success.
#include "cli/command_fixture.h"

using namespace quorvane;

namespace {

class ImportCommand : public CommandTest {
 protected:
  int Import(std::vector<std::string> more, const std::string& output = "00001.RA2") {
    std::vector<std::string> arguments = {"import",     Path("data.csv"), "-o",
                                          Path(output), "--json",         Path("out.json")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  }
  void WriteRows(const std::string& head, const char* format) {
    std::string text = head;
    for (int k = 0; k < 20; ++k) {
      char row[64];
      std::snprintf(row, sizeof row, format, 600 + k, 100 + k);
      text += row;
    }
    folder.Write("data.csv", text);
  }
};

}  // namespace

TEST_F(ImportCommand, WritesAScanThatLoadsWithTheSameNumbers) {
  WriteRows("radius;signal;ref\n", "6,%d;%d;1000\n");
  ASSERT_EQ(Import({"--reference", "3", "--speed", "12000", "--wavelength", "230", "--temperature",
                    "4", "--comment", "from a plate"}),
            0)
      << err.str();
  const auto import = Result();
  EXPECT_EQ(import["separator"], "semicolon");
  EXPECT_EQ(import["decimal"], "comma");
  EXPECT_EQ(import["columns"]["reference"], 3);
  EXPECT_FALSE(import["columns"].contains("error"));
  EXPECT_EQ(import["rows"], 20);
  EXPECT_TRUE(import["unreadable"].empty());
  EXPECT_EQ(import["cell"], 2);
  EXPECT_EQ(import["kind"], "R");
  EXPECT_NE(out.str().find("separator semicolon, decimal comma"), std::string::npos);
  ASSERT_EQ(Run({"scan", Path("00001.RA2"), "--json", Path("out.json")}), 0) << err.str();
  const auto dataset = Result()["datasets"][0];
  EXPECT_EQ(dataset["name"], "1_2A12230.dat");
  EXPECT_EQ(dataset["speed"], 12000);
  for (std::size_t k = 0; k < 20; ++k) {
    EXPECT_NEAR(dataset["r"][k], import["r"][k], 1e-6);
    EXPECT_NEAR(dataset["c"][k], import["c"][k], 1e-7);
  }
  EXPECT_NEAR(import["c"][0], 1.0, 1e-15);
}

TEST_F(ImportCommand, EndsWithTheStatusOfWhatIsWrong) {
  const struct {
    const char* head;
    const char* rows;
    std::vector<std::string> more;
    int status;
    const char* says;
  } cases[] = {
      {"", "6.%d,0.%d\n", {}, 0, "speed is not known"},
      {"", "6.%d,0.%d\n", {"--separator", "semicolon"}, 3, "no line has a number"},
      {"", "6,%d,0,%d\n", {}, 1, "--decimal point or comma"},
      {"", "6,%d,0,%d\n", {"--decimal", "point", "--skip", "2"}, 0, ""},
      {"", "%d,%d\n", {}, 1, "a radius lies between 1 and 20 cm"},
      {"", "6.%d,0.%d\n", {"--signal", "3"}, 3, "columns 1, 3"},
      {"", "6.%d,0.%d\n", {"--signal", "0"}, 2, "counted from 1"},
      {"", "6.%d,0.%d\n", {"--speed", "1e9"}, 2, "0 to 99999 rpm"},
      {"", "6.%d,0.%d\n", {"--cell", "two"}, 2, "cell"},
      {"\x01", "6.%d,0.%d\n", {}, 3, "binary"},
  };
  for (const auto& test : cases) {
    std::filesystem::remove(folder / "00001.RA2");
    WriteRows(test.head, test.rows);
    EXPECT_EQ(Import(test.more), test.status) << test.says << " | " << err.str();
    EXPECT_NE(err.str().find(test.says), std::string::npos) << err.str();
    EXPECT_EQ(std::filesystem::exists(folder / "00001.RA2"), test.status == 0) << test.says;
  }
}

TEST_F(ImportCommand, NeverWritesOverWhatItReads) {
  WriteRows("", "6.%d 0.%d\n");
  const std::string before = ReadText(folder / "data.csv");
  EXPECT_EQ(Import({}, "data.csv"), 2);
  EXPECT_EQ(Import({}, "./data.csv"), 2);
  EXPECT_EQ(Import({}, "out.json"), 2);
  EXPECT_EQ(Import({}, "00001.EL1"), 2);
  EXPECT_EQ(Import({}, "none/00001.RA1"), 3);
  EXPECT_EQ(ReadText(folder / "data.csv"), before);
  EXPECT_FALSE(std::filesystem::exists(folder / "out.json"));
}
