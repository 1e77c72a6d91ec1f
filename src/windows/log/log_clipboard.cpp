#include "windows/log/log_clipboard.h"

#include <QBuffer>
#include <QImage>
#include <QMimeData>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "rtf/picture_bytes.h"
#include "rtf/picture_file.h"
#include "rtf/rtf_reader.h"
#include "rtf/rtf_writer.h"
#include "windows/log/rich_text_document.h"

namespace quorvane {

namespace {

// Other programs know RTF by one name or the other.
constexpr const char* kRtfNames[] = {"text/rtf", "application/rtf", "text/richtext"};

// Makes each form when it is asked for: every change of the selection offers it to other windows,
// and a long log with pictures takes its time.
class SelectionMime : public QMimeData {
 public:
  explicit SelectionMime(RichText text) : text_(std::move(text)) {}

  QStringList formats() const override {
    return {kRtfNames[0], kRtfNames[1], "text/html", "text/plain"};
  }

 protected:
  QVariant retrieveData(const QString& mimeType, QMetaType) const override {
    if (mimeType == "text/plain") {
      return QString::fromStdString(PlainText(text_)).replace(QChar::LineSeparator, '\n');
    }
    if (mimeType == "text/html") {
      QTextDocument document;
      ShowRichText(text_, document);
      return document.toHtml();
    }
    if (!formats().contains(mimeType)) return {};
    return QByteArray::fromStdString(WriteRtf(text_));
  }

 private:
  RichText text_;
};

std::optional<RichText> FromRtf(const QMimeData& data) {
  for (const char* name : kRtfNames) {
    if (!data.hasFormat(QLatin1String(name))) continue;
    try {
      return ReadRtf(data.data(QLatin1String(name)).toStdString()).text;
    } catch (const RtfFault&) {  // the next name, or another form
    }
  }
  return std::nullopt;
}

// A copied image often comes with HTML that only refers to it: HTML without text does not count.
std::optional<RichText> FromHtml(const QMimeData& data, const QFont& plainFont) {
  if (!data.hasHtml()) return std::nullopt;
  QTextDocument document;
  document.setDefaultFont(plainFont);
  document.setHtml(data.html());
  if (document.toPlainText().remove(QChar::ObjectReplacementCharacter).trimmed().isEmpty()) {
    return std::nullopt;
  }
  return RichTextOf(document);
}

std::optional<RichText> FromImage(const QMimeData& data, const QFont& plainFont) {
  const auto image = data.imageData().value<QImage>();
  QBuffer png;
  if (image.isNull() || !png.open(QIODevice::WriteOnly) || !image.save(&png, "PNG")) {
    return std::nullopt;
  }
  try {
    RichText text;
    text.paragraphs.back().markFormat = FromTextFormat({}, plainFont);
    AppendPicture(text, PictureFromFile(png.data().toStdString()));
    return text;
  } catch (const PictureFault&) {
    return std::nullopt;
  }
}

}  // namespace

std::unique_ptr<QMimeData> MimeOfSelection(const QTextCursor& selection) {
  return std::make_unique<SelectionMime>(SelectedRichText(selection));
}

bool HasPastable(const QMimeData& data) {
  if (data.hasText() || data.hasHtml() || data.hasImage()) return true;
  return std::any_of(std::begin(kRtfNames), std::end(kRtfNames),
                     [&data](const char* name) { return data.hasFormat(QLatin1String(name)); });
}

std::optional<RichText> RichTextOnClipboard(const QMimeData& data, const QFont& plainFont) {
  std::optional<RichText> text = FromRtf(data);
  if (!text) text = FromHtml(data, plainFont);
  if (!text) text = FromImage(data, plainFont);
  return text;
}

}  // namespace quorvane
