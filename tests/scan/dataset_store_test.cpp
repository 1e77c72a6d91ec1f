// Faults caught here: a removal that shifts the wrong records or logs the wrong number, a name that
// no file can bear, and saved data that do not load back.
#include "scan/dataset_store.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/files.h"
#include "scan/dataset_files.h"
#include "scan/scan_file.h"
#include "scan_samples.h"

using namespace quorvane;

namespace {

using Lines = std::vector<std::string>;

DatasetStore StoreOf(const std::vector<std::string>& names) {
  DatasetStore store;
  for (const std::string& name : names) {
    store.Datasets.push_back(MakeDataset(name, {6.0, 6.5}));
    store.UseData.push_back(name != "b");
  }
  return store;
}

}  // namespace

TEST(RemoveDataset, LogsWhatIsLeft) {
  DatasetStore store = StoreOf({"a", "b", "c"});
  const auto remove = [&](int position) {
    RecordingHost host;
    RemoveDataset(store, position, host);
    return host.lines;
  };
  EXPECT_EQ(remove(0), (Lines{"Removed Dataset #1:: a\r\n", "Dataset(s) currently loaded ::",
                              "Dataset #1:: b", "Dataset #2:: c", " "}));
  EXPECT_EQ(store.UseData, (std::vector<bool>{false, true}));  // the choice moves with its dataset
  EXPECT_EQ(remove(1), (Lines{"Removed Dataset #2:: c\r\n",
                              "Dataset(s) currently loaded ::", "Dataset #1:: b", " "}));
  EXPECT_EQ(remove(0), (Lines{"Removed Dataset #1:: b", "\r\nNo datasets are currently loaded."}));
  EXPECT_EQ(store.NumDatasets(), 0);
  store = StoreOf({"a", "b"});
  RecordingHost host;
  RemoveAllDatasets(store, host);
  EXPECT_TRUE(store.Datasets.empty() && store.UseData.empty());
  EXPECT_EQ(host.lines, Lines{"\r\n*** Removed All Datasets. ***\r\n"});
}

TEST(RenameDataset, KeepsTheOldNameWhenTheNewOneIsRefused) {
  const std::string empty = "Zero-length Filename Entered!";
  const std::string illegal =
      "Illegal Filename!  The following characters can not be used\r\n"
      "in filenames  \\  /  :  *  ?  \"  <  >  |";
  const struct {
    std::string text, message, name;
  } cases[] = {{"  new name ", "", "new name"},
               {std::string(40, 'x'), "", std::string(32, 'x')},
               {"10 \u00B1 2", "", "10 \u00B1 2"},
               {"   ", empty, "old"},
               {"a/b", illegal, "old"},
               {"\u03B1-x", illegal, "old"},  // a Greek letter would be stored as "?"
               {"what?", illegal, "old"}};
  for (const auto& c : cases) {
    Dataset d = MakeDataset("old", {6.0, 6.5});
    RecordingHost host;
    EXPECT_EQ(RenameDataset(d, c.text, host), c.message.empty()) << c.text;
    EXPECT_EQ(NameOf(d), c.name);
    ASSERT_EQ(host.messages.size(), c.message.empty() ? 0u : 1u);
    if (!c.message.empty()) {
      EXPECT_EQ(host.messages[0].title, "Filename Error");
      EXPECT_EQ(host.messages[0].text, c.message);
    }
  }
}

TEST(SaveLoadedData, WritesFixedColumnsThatLoadBack) {
  Session s;
  const auto load = [&](const char* file, const char* name) {
    LoadDataFile(s.store, FileKind::kDat, s.folder / file, name, {5.6F, 7.3F}, s.host);
  };
  s.folder.Write("s.RA1", ScanText(Row(6.0, -0.5, 0.02) + Row(6.0123, 1.23456e-3, -0.03) +
                                   Rows(6.1, 0.01, 10)));
  load("s.RA1", "one.dat");
  s.store.Datasets[0].Offset = 0.25;
  const std::string text = DatasetText(s.store.Datasets[0], SavedSignal::kAsLoaded);
  EXPECT_EQ(text.substr(0, text.find("6.1")),
            "a comment\r\n" + std::string(kHeader) +
                "\r\n6.0000     -5.00000E-001    2.00000E-002"
                "\r\n6.0123      1.23456E-003   -3.00000E-002\r\n");
  EXPECT_NE(DatasetText(s.store.Datasets[0], SavedSignal::kBaselineSubtracted)
                .find("6.0000     -7.50000E-001    2.00000E-002\r\n"),
            std::string::npos);
  ASSERT_TRUE(SaveLoadedData(s.store, s.folder.path(), SavedSignal::kAsLoaded, ExistingFiles::kAsk,
                             s.host));
  load("one.dat", "two.dat");
  ASSERT_EQ(s.store.NumDatasets(), 2);
  const Dataset& a = s.store.Datasets[0];
  const Dataset& b = s.store.Datasets[1];
  EXPECT_TRUE(a.R == b.R && a.C == b.C && a.Err == b.Err && a.Good == b.Good);
  EXPECT_TRUE(a.Comment1 == b.Comment1 && a.Comment2 == b.Comment2);
}

TEST(SaveLoadedData, KeepsAFileThatMayNotBeOverwritten) {
  Session s;
  s.store = StoreOf({"mine.dat", "new.dat"});
  const auto mine = s.folder.Write("mine.dat", "not to be lost");
  s.host.answers = {false};
  ASSERT_TRUE(SaveLoadedData(s.store, s.folder.path(), SavedSignal::kAsLoaded, ExistingFiles::kAsk,
                             s.host));
  ASSERT_EQ(s.host.questions.size(), 1u);
  EXPECT_EQ(s.host.questions[0].text, PathText(mine) + " already exists!  Overwrite?");
  EXPECT_EQ(ReadWholeFile(mine, 1000), "not to be lost");
  EXPECT_TRUE(FileExists(s.folder / "new.dat"));  // No means this one only
}
