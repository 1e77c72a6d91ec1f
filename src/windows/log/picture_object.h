// Draws the pictures of the log.
#pragma once

#include <QObject>
#include <QSet>
#include <QTextObjectInterface>

class QPixmap;
class QTextDocument;

namespace quorvane {

// Takes the place of a document's own drawing of images. That one decodes each picture whenever
// text is laid out; this one knows the size from the format and decodes what is drawn, so that a
// log with hundreds of pictures stays quick and small.
class PictureObject : public QObject, public QTextObjectInterface {
  Q_OBJECT
  Q_INTERFACES(QTextObjectInterface)
 public:
  // Draws all images of `document`, which owns it.
  static void Install(QTextDocument& document);

  QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;

  // A picture that cannot be decoded is drawn as a box that says so.
  void drawObject(QPainter* painter, const QRectF& place, QTextDocument* document, int position,
                  const QTextFormat& format) override;

 private:
  explicit PictureObject(QTextDocument& document);

  // Null if the picture cannot be decoded.
  QPixmap PixmapOf(const QTextDocument& document, const QString& name);

  QSet<QString> undecodable_;  // names, so that they are tried once
};

}  // namespace quorvane
