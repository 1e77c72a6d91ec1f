#include "cli/log_document.h"

#include "base/text.h"
#include "plot/chart_export.h"
#include "rtf/picture_file.h"
#include "rtf/rtf_reader.h"
#include "rtf/rtf_writer.h"

void LogDocument::AddLine(std::string_view text) {
  const std::string lines = WithUnixLines(text) + '\n';
  text_ += lines;
  AppendText(rich_, lines, CharFormat());
}

void LogDocument::AddPicture(const Chart& chart) {
  constexpr PictureSize kSize = {400, 360};
  AppendPicture(rich_, PictureFromFile(RenderChart(chart, PictureFormat::kPng, kSize)));
}

bool LogDocument::Load(std::string_view rtf) {
  bool understood = true;
  rich_ = {};
  if (!rtf.empty()) {
    try {
      rich_ = ReadRtf(rtf).text;
    } catch (const RtfFault&) {
      understood = false;
      AppendText(rich_, Cp1252ToUtf8(rtf), CharFormat());
    }
  }
  text_ = PlainText(rich_);
  if (!text_.empty() && text_.back() != '\n') {
    text_ += '\n';
    AppendText(rich_, "\n", CharFormat());
  }
  return understood;
}

std::string LogDocument::Rtf() const {
  return WriteRtf(rich_);
}
