#include "rtf/rtf_format.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quorvane {

namespace {

using Change = void (*)(const RtfToken& word, RtfFormat& format);

int Number(const RtfToken& word, int missing) {
  return word.hasNumber ? word.number : missing;
}

int Twips(const RtfToken& word) {
  return std::clamp(word.number, -kMaxTwips, kMaxTwips);
}

template <bool CharFormat::*kMember>
void Toggle(const RtfToken& word, RtfFormat& format) {
  format.characters.*kMember = Number(word, 1) != 0;
}

template <Alignment kAlignment>
void Align(const RtfToken&, RtfFormat& format) {
  format.paragraph.alignment = kAlignment;
}

// \up and \dn shift by half points; 0 ends the shift.
template <ScriptPosition kPosition>
void Shift(const RtfToken& word, RtfFormat& format) {
  format.characters.script = Number(word, 1) != 0 ? kPosition : ScriptPosition::kNormal;
}

void Size(const RtfToken& word, RtfFormat& format) {
  format.characters.halfPoints = std::clamp(Number(word, kRtfPlainHalfPoints), 1, kMaxHalfPoints);
}

void Hide(const RtfToken& word, RtfFormat& format) {
  format.hidden = Number(word, 1) != 0;
}

void NoUnderline(const RtfToken&, RtfFormat& format) {
  format.characters.underline = false;
}

void ResetParagraph(const RtfToken&, RtfFormat& format) {
  format.paragraph = {};
}

void LeftIndent(const RtfToken& word, RtfFormat& format) {
  format.paragraph.leftIndent = Twips(word);
}

void FirstIndent(const RtfToken& word, RtfFormat& format) {
  format.paragraph.firstIndent = Twips(word);
}

void TabStop(const RtfToken& word, RtfFormat& format) {
  std::vector<int>& stops = format.paragraph.tabStops;
  if (stops.size() < kMaxRtfTabStops) stops.push_back(Twips(word));
}

const std::unordered_map<std::string_view, Change>& Changes() {
  static const std::unordered_map<std::string_view, Change> kChanges = {
      {"b", Toggle<&CharFormat::bold>},
      {"i", Toggle<&CharFormat::italic>},
      {"strike", Toggle<&CharFormat::strikeout>},
      {"striked", Toggle<&CharFormat::strikeout>},
      {"ul", Toggle<&CharFormat::underline>},
      {"uld", Toggle<&CharFormat::underline>},
      {"uldash", Toggle<&CharFormat::underline>},
      {"uldb", Toggle<&CharFormat::underline>},
      {"ulth", Toggle<&CharFormat::underline>},
      {"ulw", Toggle<&CharFormat::underline>},
      {"ulwave", Toggle<&CharFormat::underline>},
      {"ulnone", NoUnderline},
      {"super", Shift<ScriptPosition::kSuperscript>},
      {"up", Shift<ScriptPosition::kSuperscript>},
      {"sub", Shift<ScriptPosition::kSubscript>},
      {"dn", Shift<ScriptPosition::kSubscript>},
      {"nosupersub", Shift<ScriptPosition::kNormal>},
      {"fs", Size},
      {"v", Hide},
      {"deleted", Hide},
      {"pard", ResetParagraph},
      {"ql", Align<Alignment::kLeft>},
      {"qc", Align<Alignment::kCenter>},
      {"qr", Align<Alignment::kRight>},
      {"qj", Align<Alignment::kJustified>},
      {"li", LeftIndent},
      {"fi", FirstIndent},
      {"tx", TabStop}};
  return kChanges;
}

}  // namespace

void ApplyFormatWord(const RtfToken& word, RtfFormat& format) {
  const auto found = Changes().find(word.text);
  if (found != Changes().end()) found->second(word, format);
}

}  // namespace quorvane
