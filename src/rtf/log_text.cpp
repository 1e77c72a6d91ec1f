#include "rtf/log_text.h"

#include <string>

#include "base/text.h"
#include "rtf/rtf_reader.h"

namespace quorvane {

LoadedLog ReadLog(std::string_view bytes, const CharFormat& plain) {
  LoadedLog log;
  if (bytes.empty()) return log;
  try {
    log.text = ReadRtf(bytes).text;
  } catch (const RtfFault&) {
    log.understood = false;
    AppendText(log.text, Cp1252ToUtf8(bytes), plain);
  }
  const std::string text = PlainText(log.text);
  if (!text.empty() && text.back() != '\n') {
    const CharFormat last = log.text.paragraphs.back().markFormat;
    AppendText(log.text, "\n", last);
  }
  return log;
}

}  // namespace quorvane
