#include "core/settings/settings.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/arithmetic.h"
#include "base/files.h"
#include "base/host.h"
#include "base/text.h"
#include "core/settings/user_folder.h"

namespace quorvane {

namespace {

constexpr const char* kSettings = "Settings";
constexpr const char* kLogFont = "LogFont";
constexpr const char* kOwn = "Quorvane";

// A stored text that is not what its key wants.
struct NotConverted {};

std::string ColorText(std::uint32_t color) {
  std::array<char, 16> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), color, 16).ptr;
  std::string digits(text.data(), end);
  for (char& c : digits) {
    if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
  }
  return "&H" + digits;
}

std::uint32_t ColorOf(std::string_view text) {
  text = Trim(text);
  const bool hexadecimal = text.starts_with("&H") || text.starts_with("&h");
  if (hexadecimal) text.remove_prefix(2);
  std::uint32_t color = 0;
  const auto result =
      std::from_chars(text.data(), text.data() + text.size(), color, hexadecimal ? 16 : 10);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) throw NotConverted();
  return color;
}

// Reads keys of one section; an absent key leaves its field as it is. Throws NotConverted.
class SectionReader {
 public:
  SectionReader(const SettingsStore& store, const char* section)
      : store_(store), section_(section) {}

  void Read(const char* key, double& field) const {
    if (const auto text = store_.Get(section_, key)) field = Number(*text);
  }
  void Read(const char* key, float& field) const {
    double value = static_cast<double>(field);
    Read(key, value);
    if (std::abs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
      throw NotConverted();
    }
    field = static_cast<float>(value);
  }
  void Read(const char* key, bool& field) const {
    if (const auto text = store_.Get(section_, key)) field = Number(*text) > 0.0;
  }
  void Read(const char* key, std::uint32_t& color) const {
    if (const auto text = store_.Get(section_, key)) color = ColorOf(*text);
  }
  void Read(const char* key, std::int16_t& field) const {
    double value = field;
    Read(key, value);
    try {
      field =
          static_cast<std::int16_t>(RoundHalfEven(value, std::numeric_limits<std::int16_t>::min(),
                                                  std::numeric_limits<std::int16_t>::max()));
    } catch (const ArithmeticFault&) {
      throw NotConverted();
    }
  }
  void Read(const char* key, KDisplay& field) const {
    auto number = static_cast<std::int16_t>(field);
    Read(key, number);
    field = number < 0 || number > 2 ? KDisplay::kLn : static_cast<KDisplay>(number);
  }

 private:
  static double Number(const std::string& text) {
    const std::optional<double> value = ParseNumeric(text);
    if (!value) throw NotConverted();
    return *value;
  }

  const SettingsStore& store_;
  const char* section_;
};

// Both places of a constant: the default of new experiments and the page.
void ReadConstant(const SectionReader& section, const char* key, double& defaultValue,
                  double& pageValue) {
  section.Read(key, defaultValue);
  pageValue = defaultValue;
}

void ReadAll(QuorvaneModule& module, const SectionReader& section) {
  section.Read("SaveGraphs", module.Preferences.SaveGraphs);
  section.Read("SubtractOffsets", module.Preferences.Plots.SubtractOffsets);
  section.Read("PlotUsingPSI", module.Preferences.Plots.PlotUsingPSI);
  section.Read("LogGraphs", module.Preferences.LogGraphs);
  section.Read("ShowNIWarning", module.Preferences.ShowNIWarning);
  section.Read("UseBuoyantMW", module.Preferences.UseBuoyantMW);
  section.Read("KFormat", module.Preferences.KFormat);
  section.Read("DeletedColor", module.Preferences.DeletedColor);
  section.Read("GoodColor", module.Preferences.GoodColor);
  ReadConstant(section, "Vbar", module.Preferences.DefaultVbar, module.FitPage.Vbar);
  ReadConstant(section, "VbarB", module.Preferences.DefaultVbarB, module.FitPage.VbarB);
  ReadConstant(section, "Density", module.Preferences.DefaultDensity, module.FitPage.Density);
  section.Read("CriticalCCC", module.Preferences.CriticalCCCValue);
  section.Read("MassConservationTolerance", module.Preferences.MCTolerance);
  section.Read("ShowHints", module.Preferences.ShowHints);
}

std::string FloatText(float value) {
  return ShortestText(static_cast<double>(value));
}

std::string Flag(bool value) {
  return value ? "1" : "0";
}

void Store(SettingsStore& store, const char* section, const std::vector<SettingsEntry>& entries,
           Host& host) {
  try {
    store.Set(section, entries);
  } catch (const FileFault& fault) {
    host.ReportFailure("The settings could not be saved: " + std::string(fault.what()));
  }
}

bool IsTrue(const std::optional<std::string>& word) {
  return ToLower(Trim(word.value_or(""))) == "true";
}

}  // namespace

std::filesystem::path SettingsFile() {
  return ConfigurationFolder() / "quorvane.ini";
}

void LoadSettings(QuorvaneModule& module, const SettingsStore& store) {
  try {
    ReadAll(module, SectionReader(store, kSettings));
  } catch (const NotConverted&) {  // the keys behind it keep what they were
  }
  try {
    const SectionReader own(store, kOwn);
    own.Read("PreviewAxes", module.Preferences.PreviewAxes);
    own.Read("AlwaysFitToRest", module.Preferences.AlwaysFitToRest);
  } catch (const NotConverted&) {
  }
}

void SaveSettings(const QuorvaneModule& module, const std::filesystem::path& currentFolder,
                  SettingsStore& store, Host& host) {
  Store(store, kSettings,
        {{"SaveGraphs", Flag(module.Preferences.SaveGraphs)},
         {"PlotUsingPSI", Flag(module.Preferences.Plots.PlotUsingPSI)},
         {"SubtractOffsets", Flag(module.Preferences.Plots.SubtractOffsets)},
         {"LogGraphs", Flag(module.Preferences.LogGraphs)},
         {"ShowNIWarning", Flag(module.Preferences.ShowNIWarning)},
         {"UseBuoyantMW", Flag(module.Preferences.UseBuoyantMW)},
         {"KFormat", std::to_string(static_cast<int>(module.Preferences.KFormat))},
         {"LastDirectory", PathText(currentFolder)},
         {"DeletedColor", ColorText(module.Preferences.DeletedColor)},
         {"GoodColor", ColorText(module.Preferences.GoodColor)},
         {"Vbar", ShortestText(module.Preferences.DefaultVbar)},
         {"VbarB", ShortestText(module.Preferences.DefaultVbarB)},
         {"Density", ShortestText(module.Preferences.DefaultDensity)},
         {"MassConservationTolerance", ShortestText(module.Preferences.MCTolerance)},
         {"CriticalCCC", ShortestText(module.Preferences.CriticalCCCValue)}},
        host);
}

void SaveOwnSettings(const QuorvaneModule& module, SettingsStore& store, Host& host) {
  Store(store, kOwn,
        {{"PreviewAxes", Flag(module.Preferences.PreviewAxes)},
         {"AlwaysFitToRest", Flag(module.Preferences.AlwaysFitToRest)}},
        host);
}

std::string LoadArrangement(const SettingsStore& store, std::string_view key) {
  return store.Get(kOwn, key).value_or("");
}

void SaveArrangement(std::string_view key, const std::string& text, SettingsStore& store,
                     Host& host) {
  Store(store, kOwn, {{std::string(key), text}}, host);
}

void SaveShowHints(const QuorvaneModule& module, SettingsStore& store, Host& host) {
  Store(store, kSettings, {{"ShowHints", Flag(module.Preferences.ShowHints)}}, host);
}

std::filesystem::path LoadLastDirectory(const SettingsStore& store,
                                        const std::filesystem::path& programFolder) {
  const std::optional<std::string> text = store.Get(kSettings, "LastDirectory");
  if (!text || !DirExists(PathFromText(*text))) return programFolder;
  return PathFromText(*text);
}

WindowPlace LoadWindowPlace(const SettingsStore& store) {
  const SectionReader section(store, kSettings);
  WindowPlace place;
  try {
    section.Read("MainLeft", place.MainLeft);
    section.Read("MainTop", place.MainTop);
    section.Read("MainWidth", place.MainWidth);
    section.Read("MainHeight", place.MainHeight);
  } catch (const NotConverted&) {
    return {};
  }
  return place;
}

void SaveWindowPlace(const WindowPlace& place, SettingsStore& store, Host& host) {
  Store(store, kSettings,
        {{"MainLeft", FloatText(place.MainLeft)},
         {"MainTop", FloatText(place.MainTop)},
         {"MainWidth", FloatText(place.MainWidth)},
         {"MainHeight", FloatText(place.MainHeight)}},
        host);
}

LogFont LoadLogFont(const SettingsStore& store, LogFont present) {
  LogFont font = present;
  font.Font = Trim(store.Get(kLogFont, "Font").value_or(present.Font));
  font.Bold = IsTrue(store.Get(kLogFont, "Bold"));
  font.Italic = IsTrue(store.Get(kLogFont, "Italic"));
  try {
    SectionReader(store, kLogFont).Read("Size", font.Size);
  } catch (const NotConverted&) {
    font.Size = present.Size;
  }
  if (font.Font.empty()) font.Font = present.Font;
  if (!(font.Size >= 1.0F && font.Size <= 1000.0F)) font.Size = present.Size;
  return font;
}

void SaveLogFont(const LogFont& font, SettingsStore& store, Host& host) {
  Store(store, kLogFont,
        {{"Font", font.Font},
         {"Size", FloatText(font.Size)},
         {"Bold", font.Bold ? "True" : "False"},
         {"Italic", font.Italic ? "True" : "False"}},
        host);
}

}  // namespace quorvane
