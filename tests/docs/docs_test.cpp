// The guides: their links and pictures lead somewhere, and messages.md explains what the program
// says, no more and no less. And the windows say it through tr().
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/files.h"
#include "base/text.h"

using namespace quorvane;

namespace {

namespace fs = std::filesystem;

const fs::path kRoot = QUORVANE_SOURCE_DIR;

std::string Read(const fs::path& file) {
  return ReadWholeFile(file, std::size_t{8} << 20U);
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

// All blanks and line breaks as one blank.
std::string Collapsed(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\n' || c == '\t' || c == '\r';
    if (!blank) result += c;
    if (blank && !result.ends_with(' ')) result += ' ';
  }
  return result;
}

void Replace(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

// What links call the headings of a page.
std::set<std::string> PlacesOf(const fs::path& page) {
  std::set<std::string> places;
  for (const std::string& line : LinesOf(Read(page))) {
    if (!line.starts_with('#')) continue;
    std::string place;
    for (const char c : line.substr(line.find(' ') + 1)) {
      const auto letter = static_cast<unsigned char>(c);
      if (c == ' ') place += '-';
      if (std::isalnum(letter) != 0 || c == '-' || c == '_') {
        place += static_cast<char>(std::tolower(letter));
      }
    }
    EXPECT_TRUE(places.insert(place).second) << page << ": two headings " << line;
  }
  return places;
}

// The targets of the links and pictures in a page.
std::vector<std::string> LinksOf(const std::string& text) {
  std::vector<std::string> links;
  for (std::size_t at = 0; (at = text.find("](", at)) != std::string::npos;) {
    at += 2;
    links.push_back(text.substr(at, text.find(')', at) - at));
  }
  return links;
}

std::vector<fs::path> Pages() {
  std::vector<fs::path> pages = {kRoot / "README.md"};
  for (const auto& entry : fs::directory_iterator(kRoot / "docs")) {
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  }
  return pages;
}

// What stands in `folder` of the program without its comments, literals that stand side by side
// joined, \" as kQuote.
constexpr char kQuote = '\x01';

std::string Source(const char* folder = "src") {
  std::string source;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
    const fs::path extension = entry.path().extension();
    if (extension != ".cpp" && extension != ".h") continue;
    for (const std::string& line : LinesOf(Read(entry.path()))) {
      source += line.substr(0, line.starts_with("//") ? 0 : line.find(" //")) + '\n';
    }
  }
  Replace(source, R"(\\)", "/");
  Replace(source, R"(\")", std::string(1, kQuote));
  Replace(source, R"('"')", "' '");
  source = Collapsed(source);
  Replace(source, "\" \"", "");
  for (const char* lineBreak : {"\\r", "\\n"}) Replace(source, lineBreak, " ");
  return Collapsed(source);
}

std::string WithQuotes(std::string text) {
  Replace(text, std::string(1, kQuote), "\"");
  return text;
}

// The texts of three words or more in the statements of `source` that tell the user something.
std::set<std::string> ToldBy(const std::string& source) {
  static const std::regex kTelling(
      R"(\b(ShowMessage|AskYesNo|ReportFailure|Refusal|FileFault|ArchiveFault|JobFault|SolutionFault|Fail)[({])");
  std::set<std::string> told;
  std::string text;
  const auto keep = [&] {
    text = WithQuotes(std::string(Trim(text)));
    if (std::count(text.begin(), text.end(), ' ') >= 2) told.insert(text);
    text.clear();
  };
  std::sregex_iterator call(source.begin(), source.end(), kTelling);
  for (; call != std::sregex_iterator(); ++call) {
    bool inside = false;
    for (auto c = (*call)[0].second; c != source.end() && (inside || *c != ';'); ++c) {
      const bool gap = inside && *c == '%';  // %1 stands for something else
      if (inside && *c != '"' && !gap) text += *c;
      if (*c == '"') inside = !inside;
      if (*c == '"' || gap) keep();
      if (gap) ++c;
    }
  }
  return told;
}

// The texts in `source` that a user reads and that do not pass through tr(): those of two words or
// more, and any that a widget is made with or given.
std::vector<std::string> UntranslatedIn(const std::string& source) {
  static const std::regex kWords(R"([A-Za-z]{2,}[,:.]? +[A-Za-z]{2,})");
  static const std::regex kTranslated(R"((\btr\(|QT_TRANSLATE_NOOP\( ?"QObject",) ?$)");
  // Faults and the log speak one language, for every front.
  static const std::regex kNotRead(R"(\b(runtime_error|PrintIt)\([^;{]*$)");
  static const std::regex kShown(
      R"((new Q\w+|set(Text|ToolTip|WindowTitle|Title|Accessible\w+)|add(Action|Item|Tab))\( ?$)");
  static const std::set<std::string> kNames = {"Courier New", "Liberation Sans", "DejaVu Sans",
                                               "model name"};
  constexpr std::size_t kBefore = 200;  // letters of a statement before the text
  std::vector<std::string> found;
  for (std::size_t at = 0; (at = source.find('"', at)) != std::string::npos;) {
    const std::string before = source.substr(at - std::min(at, kBefore), std::min(at, kBefore));
    const std::size_t end = source.find('"', at + 1);
    const std::string text = source.substr(at + 1, end - at - 1);
    at = end + 1;
    if (text.starts_with('<')) continue;  // XML of a picture
    if (kNames.contains(text)) continue;
    if (std::regex_search(before, kTranslated) || std::regex_search(before, kNotRead)) continue;
    const bool letters =
        std::any_of(text.begin(), text.end(), [](unsigned char c) { return std::isalpha(c) != 0; });
    if (std::regex_search(text, kWords) || (letters && std::regex_search(before, kShown))) {
      found.push_back(text);
    }
  }
  return found;
}

// The code spans of a text.
std::vector<std::string> MessagesOf(const std::string& cell) {
  std::vector<std::string> messages;
  for (std::size_t at = 0; (at = cell.find('`', at)) != std::string::npos;) {
    const std::size_t end = cell.find('`', ++at);
    messages.push_back(cell.substr(at, end - at));
    at = end + 1;
  }
  return messages;
}

// The parts of a message between what differs: <NAME> or dots.
std::vector<std::string> FixedParts(std::string message) {
  Replace(message, "...", "<->");
  std::vector<std::string> parts(1);
  for (std::size_t at = 0; at < message.size(); ++at) {
    const std::size_t end = message.find_first_of("<>", at + 1);
    const bool opens = message[at] == '<' && end != std::string::npos && message[end] == '>';
    if (opens && message[at + 1] != ' ') {
      at = end;
      parts.emplace_back();
    } else {
      parts.back() += message[at];
    }
  }
  return parts;
}

}  // namespace

TEST(Docs, LinksLeadSomewhere) {
  std::map<fs::path, std::set<std::string>> places;
  std::set<std::string> shown;
  for (const fs::path& page : Pages()) {
    for (const std::string& link : LinksOf(Read(page))) {
      if (link.find("://") != std::string::npos) continue;
      const std::size_t mark = std::min(link.find('#'), link.size());
      const fs::path target = mark == 0 ? page : page.parent_path() / link.substr(0, mark);
      EXPECT_TRUE(fs::exists(target)) << page << ": " << link;
      if (target.extension() == ".png") shown.insert(target.filename().string());
      if (mark == link.size() || !fs::exists(target)) continue;
      if (!places.contains(target)) places[target] = PlacesOf(target);
      EXPECT_TRUE(places[target].contains(link.substr(mark + 1))) << page << ": " << link;
    }
  }
  for (const auto& entry : fs::directory_iterator(kRoot / "docs/images")) {
    EXPECT_TRUE(shown.contains(entry.path().filename().string())) << entry.path();
  }
}

TEST(Docs, MessagesStandInTheProgram) {
  std::string source = WithQuotes(Source()) + Read(kRoot / "src/solution/data/not_listed.csv");
  for (const auto& entry : fs::directory_iterator(kRoot / "src/python/quorvane")) {
    if (entry.path().extension() == ".py") source += Read(entry.path());
  }
  int messages = 0;
  for (const std::string& line : LinesOf(Read(kRoot / "docs/messages.md"))) {
    if (!line.starts_with("| ")) continue;
    for (const std::string& message : MessagesOf(line.substr(0, line.find(" | ", 2)))) {
      ++messages;
      for (const std::string& part : FixedParts(message)) {
        EXPECT_TRUE(source.find(Trim(part)) != std::string::npos) << message << "\n  " << part;
      }
    }
  }
  EXPECT_GT(messages, 150);
}

TEST(Docs, TextsOfWindowsPassThroughTr) {
  for (const char* folder : {"src/windows", "src/plot"}) {
    for (const std::string& text : UntranslatedIn(Source(folder))) {
      ADD_FAILURE() << folder << " says without tr(): " << text;
    }
  }
  EXPECT_EQ(
      UntranslatedIn(R"(new QLabel("Speed"), tr("No data"), QStringLiteral("No data"))").size(),
      2U);
}

TEST(Docs, MessagesOfTheProgramAreExplained) {
  constexpr std::size_t kTelltale = 10;  // letters of a message that tell it from another one
  const std::string guide = Collapsed(Read(kRoot / "docs/messages.md"));
  std::vector<std::string> explained;
  for (const std::string& message : MessagesOf(guide)) {
    for (const std::string& part : FixedParts(message)) {
      if (Trim(part).size() >= kTelltale) explained.emplace_back(Trim(part));
    }
  }
  const std::set<std::string> told = ToldBy(Source());
  EXPECT_GT(told.size(), 120U);
  for (const std::string& text : told) {
    const auto holds = [&](const std::string& part) { return text.find(part) != text.npos; };
    EXPECT_TRUE(guide.find(text) != guide.npos ||
                std::any_of(explained.begin(), explained.end(), holds))
        << "docs/messages.md does not explain: " << text;
  }
}
