#include "windows/log/rich_text_document.h"

#include <QCryptographicHash>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "plot/chart_color.h"
#include "rtf/picture_bytes.h"
#include "rtf/picture_file.h"
#include "rtf/rtf_reader.h"

namespace quorvane {

namespace {

double ToPixels(int twips) {
  return static_cast<double>(twips) / kTwipsPerPixel;
}

int ToTwips(double pixels) {
  constexpr double kGreatest = kMaxTwips;
  return static_cast<int>(std::lround(std::clamp(pixels * kTwipsPerPixel, -kGreatest, kGreatest)));
}

// A QTextDocument breaks paragraphs at U+2029 and two of its own signs, and takes U+FFFC for the
// place of an image.
QString InlineText(const std::string& utf8) {
  QString text = QString::fromStdString(utf8);
  for (QChar& c : text) {
    if (c == QChar::ParagraphSeparator) {
      c = QChar::LineSeparator;
    } else if (c == QChar(0xFDD0) || c == QChar(0xFDD1) || c == QChar::ObjectReplacementCharacter) {
      c = QChar::ReplacementCharacter;
    }
  }
  return text;
}

Qt::Alignment ToQt(Alignment alignment) {
  constexpr Qt::AlignmentFlag kFlags[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight,
                                          Qt::AlignJustify};
  return kFlags[static_cast<std::size_t>(alignment)];
}

Alignment FromQt(Qt::Alignment alignment) {
  if (alignment.testFlag(Qt::AlignHCenter)) return Alignment::kCenter;
  if (alignment.testFlag(Qt::AlignRight)) return Alignment::kRight;
  if (alignment.testFlag(Qt::AlignJustify)) return Alignment::kJustified;
  return Alignment::kLeft;
}

QTextBlockFormat ToBlockFormat(const ParagraphFormat& shape) {
  QTextBlockFormat format;
  format.setAlignment(ToQt(shape.alignment));
  format.setLeftMargin(ToPixels(shape.leftIndent));
  format.setTextIndent(ToPixels(shape.firstIndent));
  QList<QTextOption::Tab> tabs;
  for (const int stop : shape.tabStops) {
    tabs.append(QTextOption::Tab(ToPixels(stop), QTextOption::LeftTab));
  }
  if (!tabs.isEmpty()) format.setTabPositions(tabs);
  return format;
}

ParagraphFormat FromBlockFormat(const QTextBlockFormat& format, double indentWidth) {
  ParagraphFormat shape;
  shape.alignment = FromQt(format.alignment());
  shape.leftIndent = ToTwips(format.leftMargin() + format.indent() * indentWidth);
  shape.firstIndent = ToTwips(format.textIndent());
  for (const QTextOption::Tab& tab : format.tabPositions()) {
    shape.tabStops.push_back(ToTwips(tab.position));
  }
  return shape;
}

bool IsTypewriter(const QString& family) {
  constexpr const char* kParts[] = {"Courier", "Mono", "Consolas", "Typewriter"};
  return std::any_of(std::begin(kParts), std::end(kParts), [&family](const char* part) {
    return family.contains(QLatin1String(part), Qt::CaseInsensitive);
  });
}

// Inserts runs and pictures, keeping the last format: neighbours mostly look alike.
class Inserter {
 public:
  explicit Inserter(QTextCursor& cursor) : cursor_(cursor) {}

  void Insert(const RichText& text) {
    for (const Paragraph& paragraph : text.paragraphs) {
      Begin(paragraph, &paragraph == &text.paragraphs.front());
      for (const InlineItem& item : paragraph.items) {
        if (const auto* run = std::get_if<TextRun>(&item)) {
          cursor_.insertText(InlineText(run->text), Format(run->format));
        } else {
          InsertPicture(std::get<Picture>(item), cursor_);
        }
      }
    }
  }

 private:
  void Begin(const Paragraph& paragraph, bool first) {
    if (!first) {
      cursor_.insertBlock(Shape(paragraph.format), Format(paragraph.markFormat));
    } else if (cursor_.block().length() == 1) {
      cursor_.setBlockFormat(Shape(paragraph.format));
      cursor_.setBlockCharFormat(Format(paragraph.markFormat));
    }
  }

  const QTextCharFormat& Format(const CharFormat& format) {
    if (textFormat_.isEmpty() || format != charFormat_) textFormat_ = ToTextFormat(format);
    charFormat_ = format;
    return textFormat_;
  }

  const QTextBlockFormat& Shape(const ParagraphFormat& shape) {
    if (blockFormat_.isEmpty() || shape != shape_) blockFormat_ = ToBlockFormat(shape);
    shape_ = shape;
    return blockFormat_;
  }

  QTextCursor& cursor_;
  CharFormat charFormat_;
  QTextCharFormat textFormat_;
  ParagraphFormat shape_;
  QTextBlockFormat blockFormat_;
};

// Reads a stretch of a document; formats are looked at once each.
class Collector {
 public:
  explicit Collector(const QTextDocument& document)
      : document_(document), defaultFont_(document.defaultFont()) {}

  // The characters from `from` up to but without `to`.
  RichText Collect(int from, int to) {
    RichText text;
    text.paragraphs.clear();
    const CharFormat plain = FromTextFormat({}, defaultFont_);
    text.defaultFamily = plain.family;
    QTextBlock block = document_.findBlock(from);
    for (; block.isValid() && block.position() <= to; block = block.next()) {
      text.paragraphs.push_back(WithPictures(TakeBlock(block, from, to), plain));
    }
    if (text.paragraphs.empty()) text.paragraphs.emplace_back();
    return text;
  }

  DocumentParagraph TakeBlock(const QTextBlock& block, int from, int to) {
    DocumentParagraph read;
    read.paragraph = {{},
                      FromBlockFormat(block.blockFormat(), document_.indentWidth()),
                      Format(block.charFormatIndex(), block.charFormat())};
    for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
      Take(piece.fragment(), from, to, read);
    }
    return read;
  }

 private:
  void Take(const QTextFragment& fragment, int from, int to, DocumentParagraph& read) {
    const int begin = std::max(from, fragment.position());
    const int end = std::min(to, fragment.position() + fragment.length());
    if (begin >= end) return;
    const QTextCharFormat format = fragment.charFormat();
    if (format.isImageFormat()) {
      for (int k = begin; k < end; ++k) TakePicture(format.toImageFormat(), read);
      return;
    }
    const QString part = fragment.text().mid(begin - fragment.position(), end - begin);
    AppendRun(read.paragraph, part.toStdString(), Format(fragment.charFormatIndex(), format));
  }

  void TakePicture(const QTextImageFormat& image, DocumentParagraph& read) {
    const QVariant bytes = document_.resource(QTextDocument::ImageResource,
                                              document_.baseUrl().resolved(image.name()));
    Picture picture;
    if (image.width() > 0.0) picture.widthTwips = std::max(1, ToTwips(image.width()));
    if (image.height() > 0.0) picture.heightTwips = std::max(1, ToTwips(image.height()));
    read.paragraph.items.emplace_back(std::move(picture));
    read.pictures.push_back(bytes.toByteArray());
  }

  const CharFormat& Format(int index, const QTextCharFormat& format) {
    const auto [place, added] = formats_.try_emplace(index);
    if (added) place->second = FromTextFormat(format, defaultFont_);
    return place->second;
  }

  const QTextDocument& document_;
  QFont defaultFont_;
  std::unordered_map<int, CharFormat> formats_;  // by index in the document
};

// The picture in a file, at the size of `shown` where that has one. Throws PictureFault.
Picture PictureAt(const QByteArray& file, const Picture& shown) {
  Picture picture = PictureFromFile(file.toStdString());
  if (shown.widthTwips > 0) picture.widthTwips = shown.widthTwips;
  if (shown.heightTwips > 0) picture.heightTwips = shown.heightTwips;
  return picture;
}

}  // namespace

QFont FontOf(const CharFormat& format) {
  QFont font(QString::fromStdString(format.family));
  if (IsTypewriter(font.family())) font.setStyleHint(QFont::TypeWriter);
  font.setPointSizeF(format.halfPoints / 2.0);
  font.setBold(format.bold);
  font.setItalic(format.italic);
  font.setUnderline(format.underline);
  font.setStrikeOut(format.strikeout);
  return font;
}

QTextCharFormat ToTextFormat(const CharFormat& format) {
  QTextCharFormat text;
  const QString family = QString::fromStdString(format.family);
  text.setFontFamilies({family});
  if (IsTypewriter(family)) text.setFontStyleHint(QFont::TypeWriter);
  text.setFontPointSize(format.halfPoints / 2.0);
  text.setFontWeight(format.bold ? QFont::Bold : QFont::Normal);
  text.setFontItalic(format.italic);
  text.setFontUnderline(format.underline);
  text.setFontStrikeOut(format.strikeout);
  if (format.script == ScriptPosition::kSuperscript) {
    text.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
  } else if (format.script == ScriptPosition::kSubscript) {
    text.setVerticalAlignment(QTextCharFormat::AlignSubScript);
  }
  if (format.color) text.setForeground(ToQColor(*format.color));
  return text;
}

CharFormat FromTextFormat(const QTextCharFormat& format, const QFont& defaultFont) {
  constexpr double kPointsPerPixel = 0.75;
  const QFont font = format.font().resolve(defaultFont);
  const double points = font.pointSizeF() > 0.0 ? font.pointSizeF()  // else sized in pixels
                                                : font.pixelSize() * kPointsPerPixel;
  CharFormat look;
  look.family = font.family().toStdString();
  look.halfPoints =
      static_cast<int>(std::clamp(std::lround(2.0 * points), 1L, long{kMaxHalfPoints}));
  look.bold = font.bold();
  look.italic = font.italic();
  look.underline = font.underline();
  look.strikeout = font.strikeOut();
  if (format.verticalAlignment() == QTextCharFormat::AlignSuperScript) {
    look.script = ScriptPosition::kSuperscript;
  } else if (format.verticalAlignment() == QTextCharFormat::AlignSubScript) {
    look.script = ScriptPosition::kSubscript;
  }
  if (format.foreground().style() != Qt::NoBrush) {
    look.color = FromQColor(format.foreground().color());
  }
  return look;
}

void InsertPicture(const Picture& picture, QTextCursor& cursor) {
  const QByteArray bytes = QByteArray::fromStdString(picture.bytes);
  const QString name =
      "picture:" + QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
  cursor.document()->addResource(QTextDocument::ImageResource, QUrl(name), bytes);
  QTextImageFormat image;
  image.merge(cursor.charFormat());  // the font of a text that is typed behind it
  image.setName(name);
  image.setWidth(ToPixels(picture.widthTwips));
  image.setHeight(ToPixels(picture.heightTwips));
  cursor.insertImage(image);
}

void InsertRichText(const RichText& text, QTextCursor& cursor) {
  cursor.beginEditBlock();
  cursor.removeSelectedText();
  Inserter(cursor).Insert(text);
  cursor.endEditBlock();
}

void ShowRichText(const RichText& text, QTextDocument& document) {
  const bool undo = document.isUndoRedoEnabled();
  document.clear();
  document.setUndoRedoEnabled(false);
  QTextCursor cursor(&document);
  InsertRichText(text, cursor);
  document.setUndoRedoEnabled(undo);
}

RichText RichTextOf(const QTextDocument& document) {
  return Collector(document).Collect(0, document.characterCount() - 1);
}

DocumentParagraph ParagraphOf(const QTextBlock& block) {
  return Collector(*block.document()).TakeBlock(block, 0, block.document()->characterCount() - 1);
}

Paragraph WithPictures(const DocumentParagraph& read, const CharFormat& plain) {
  if (read.pictures.isEmpty()) return read.paragraph;
  Paragraph paragraph = {{}, read.paragraph.format, read.paragraph.markFormat};
  auto file = read.pictures.begin();
  for (const InlineItem& item : read.paragraph.items) {
    if (const auto* run = std::get_if<TextRun>(&item)) {
      AppendRun(paragraph, run->text, run->format);
      continue;
    }
    try {
      paragraph.items.emplace_back(PictureAt(*file++, std::get<Picture>(item)));
    } catch (const PictureFault&) {
      AppendRun(paragraph, kPicturePlaceholder, plain);
    }
  }
  return paragraph;
}

RichText SelectedRichText(const QTextCursor& cursor) {
  return Collector(*cursor.document()).Collect(cursor.selectionStart(), cursor.selectionEnd());
}

}  // namespace quorvane
