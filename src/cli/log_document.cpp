#include "cli/log_document.h"

#include <utility>

#include "base/text.h"
#include "plot/chart_export.h"
#include "rtf/log_text.h"
#include "rtf/picture_file.h"
#include "rtf/rtf_writer.h"

namespace quorvane {

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
  LoadedLog loaded = ReadLog(rtf, CharFormat());
  rich_ = std::move(loaded.text);
  text_ = PlainText(rich_);
  return loaded.understood;
}

std::string LogDocument::Rtf() const {
  return WriteRtf(rich_);
}

}  // namespace quorvane
