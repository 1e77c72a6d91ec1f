#include "core/settings/settings.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "core/settings/recent_files.h"
#include "support/recording_host.h"
#include "support/temp_folder.h"

using namespace quorvane;

namespace {

class SettingsTest : public testing::Test {
 protected:
  TempFolder folder;
  IniSettings store{folder / "deep" / "quorvane.ini"};
  RecordingHost host;
};

// Archives as keys 1 to 8; "" leaves a key out.
void StoreRecent(IniSettings& store, const std::vector<std::string>& paths) {
  for (std::size_t k = 0; k < paths.size(); ++k) {
    const std::vector<SettingsEntry> entry = {{std::to_string(k + 1), paths[k]}};
    if (!paths[k].empty()) store.Set("MRU", entry);
  }
}

}  // namespace

TEST_F(SettingsTest, KeepWhatASessionSet) {
  QuorvaneModule module;
  module.Preferences.SaveGraphs = false;
  module.Preferences.KFormat = KDisplay::kPlain;
  module.Preferences.DeletedColor = 0x0A00FF;
  module.Preferences.DefaultVbar = 0.1 + 0.2;
  module.Preferences.MCTolerance = 1e-7;
  module.Preferences.ShowHints = false;
  SaveSettings(module, folder.path(), store, host);
  SaveShowHints(module, store, host);
  SaveLogFont({"Liberation Mono", true, false, 9.5F}, store, host);
  SaveWindowPlace({-20.5F, 1.0F, 9000.0F, 7000.0F}, store, host);
  EXPECT_EQ(store.Get("settings", "DeletedColor"), "&HA00FF");
  EXPECT_EQ(store.Get("SETTINGS", "GoodColor"), "&HFF0000");

  QuorvaneModule next;
  LoadSettings(next, store);
  EXPECT_FALSE(next.Preferences.SaveGraphs);
  EXPECT_FALSE(next.Preferences.ShowHints);
  EXPECT_TRUE(next.Preferences.LogGraphs);
  EXPECT_EQ(next.Preferences.KFormat, KDisplay::kPlain);
  EXPECT_EQ(next.Preferences.DeletedColor, 0x0A00FFU);
  EXPECT_EQ(next.FitPage.Vbar, 0.1 + 0.2);
  EXPECT_EQ(next.Preferences.MCTolerance, 1e-7);
  EXPECT_EQ(LoadLastDirectory(store, "/elsewhere"), folder.path());
  EXPECT_EQ(LoadWindowPlace(store).MainLeft, -20.5F);
  const LogFont font = LoadLogFont(store, {});
  EXPECT_EQ(font.Font, "Liberation Mono");
  EXPECT_TRUE(font.Bold);
  EXPECT_EQ(font.Size, 9.5F);
}

TEST_F(SettingsTest, EndAtTheFirstValueThatDoesNotConvert) {
  const struct {
    const char* line;
    bool saveGraphs;
    bool subtractOffsets;
    int kFormat;
    double vbar;  // the file says 0.8
  } cases[] = {
      {"SaveGraphs=-1", false, true, 1, 0.8},    {"SaveGraphs=2", true, true, 1, 0.8},
      {"SaveGraphs=yes", true, true, 0, 0.73},   {"KFormat=2.5", true, true, 2, 0.8},
      {"KFormat=7", true, true, 0, 0.8},         {"KFormat=40000", true, true, 0, 0.73},
      {"GoodColor=&HFG", true, true, 1, 0.73},   {"GoodColor=4294967296", true, true, 1, 0.73},
      {"GoodColor=65280", true, true, 1, 0.8},   {"VbarB=1e400", true, true, 1, 0.8},
      {"SubtractOffsets=", true, true, 0, 0.73}, {"SubtractOffsets=0", true, false, 1, 0.8},
  };
  for (const auto& test : cases) {
    folder.Write("quorvane.ini",
                 "; mine\n[Settings]\n" + std::string(test.line) + "\nKFormat=1\nVbar=0.8\n");
    QuorvaneModule module;
    LoadSettings(module, IniSettings(folder / "quorvane.ini"));
    EXPECT_EQ(module.Preferences.SaveGraphs, test.saveGraphs) << test.line;
    EXPECT_EQ(module.Preferences.Plots.SubtractOffsets, test.subtractOffsets) << test.line;
    EXPECT_EQ(static_cast<int>(module.Preferences.KFormat), test.kFormat) << test.line;
    EXPECT_EQ(module.FitPage.Vbar, test.vbar) << test.line;
    EXPECT_EQ(module.Preferences.DefaultVbarB, 0.73) << test.line;
  }
}

TEST_F(SettingsTest, FallBackToDefaults) {
  folder.Write("quorvane.ini",
               "[Settings]\nLastDirectory=/no/such/folder\nMainTop=high\nMainLeft=5\n"
               "[LogFont]\nFont=  \nSize=1e99\nBold=maybe\n");
  const IniSettings bad(folder / "quorvane.ini");
  EXPECT_EQ(LoadLastDirectory(bad, "/program"), "/program");
  EXPECT_EQ(LoadWindowPlace(bad).MainLeft, 1000.0F);
  const LogFont font = LoadLogFont(bad, {"Courier New", true, true, 12.0F});
  EXPECT_EQ(font.Font, "Courier New");
  EXPECT_FALSE(font.Bold);
  EXPECT_EQ(font.Size, 12.0F);
}

TEST_F(SettingsTest, LeaveForeignLinesAndAwkwardValuesAlone) {
  folder.Write("quorvane.ini", "; a comment\n[Other]\nVbar=9\n\n[mru]\n1=C:\\lab\\a.exz\njunk\n");
  IniSettings ini(folder / "quorvane.ini");
  const std::string awkward = " two\nlines, \"quotes\" \\ and = ; # [x] ";
  const std::vector<SettingsEntry> entries = {{"awkward", awkward}, {"1", "b.exz"}};
  ini.Set("MRU", entries);
  EXPECT_EQ(ini.Get("MRU", "awkward"), awkward);
  EXPECT_EQ(ini.Get("Mru", "1"), "b.exz");
  EXPECT_EQ(ini.Get("other", "Vbar"), "9");
  EXPECT_EQ(ini.Get("MRU", "Awkward"), std::nullopt);
  const std::string text = ReadText(folder / "quorvane.ini");
  EXPECT_TRUE(text.starts_with("; a comment\n[Other]\nVbar=9\n\n[mru]\n1=b.exz\njunk\n")) << text;
}

TEST_F(SettingsTest, SayWhenTheyCannotBeSaved) {
  IniSettings nowhere(folder.path());
  SaveSettings({}, folder.path(), nowhere, host);
  AddRecentFile("a.exz", nowhere, host);
  EXPECT_EQ(host.failures.size(), 1U);
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].title, "Registry Error");
  EXPECT_EQ(host.messages[0].text, "Error saving MRUs to Registry");
}

TEST_F(SettingsTest, MoveRecentFilesUp) {
  const struct {
    std::vector<std::string> before;
    const char* added;
    std::vector<std::string> after;
  } cases[] = {
      {{}, "a", {"a"}},
      {{"a", "b", "c"}, "b", {"b", "a", "c"}},
      {{"a", "b"}, "B", {"B", "a", "b"}},
      {{"1", "2", "3", "4", "5", "6", "7", "8"}, "9", {"9", "1", "2", "3", "4", "5", "6", "7"}},
      {{"a", "", "c"}, "d", {"d", "a", "c", "c"}},  // the hole moves nothing into its follower
  };
  for (const auto& test : cases) {
    std::filesystem::remove(folder / "deep" / "quorvane.ini");
    StoreRecent(store, test.before);
    AddRecentFile(test.added, store, host);
    EXPECT_EQ(RecentFiles(store), test.after) << test.added;
  }
}
