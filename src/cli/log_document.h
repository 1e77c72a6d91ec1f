// The log of a command: its lines as plain text and, with pictures, as a rich text.
#pragma once

#include <string>
#include <string_view>

#include "base/chart.h"
#include "rtf/rich_text.h"

namespace quorvane {

class LogDocument {
 public:
  // A text that makes one line or, with CR LF inside, several.
  void AddLine(std::string_view text);

  // A picture of the chart, 400 by 360 pixels, behind the last line end. Needs a QApplication.
  void AddPicture(const Chart& chart);

  // Takes the bytes of an RTF file in place of the present log. False if they are none: then they
  // come in as plain text.
  bool Load(std::string_view rtf);

  // All lines, ended by \n.
  const std::string& Text() const { return text_; }

  // The log as the bytes of an RTF file.
  std::string Rtf() const;

 private:
  std::string text_;
  RichText rich_;
};

}  // namespace quorvane
