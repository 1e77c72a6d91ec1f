#include "windows/log/picture_object.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPixmapCache>
#include <QTextDocument>
#include <QTextFormat>
#include <QUrl>
#include <algorithm>

namespace quorvane {

namespace {

constexpr double kPixelsPerInch = 96.0;  // in which the formats give sizes

void DrawPlaceholder(QPainter& painter, const QRectF& place) {
  painter.setPen(Qt::darkGray);
  painter.setBrush(QColor(Qt::white));
  painter.drawRect(place.adjusted(0.5, 0.5, -0.5, -0.5));
  painter.drawText(place, Qt::AlignCenter, QObject::tr("[picture]"));
}

}  // namespace

PictureObject::PictureObject(QTextDocument& document) : QObject(&document) {}

void PictureObject::Install(QTextDocument& document) {
  document.documentLayout()->registerHandler(QTextFormat::ImageObject, new PictureObject(document));
}

QPixmap PictureObject::PixmapOf(const QTextDocument& document, const QString& name) {
  QPixmap pixmap;
  if (QPixmapCache::find(name, &pixmap) || undecodable_.contains(name)) return pixmap;
  const QVariant bytes = document.resource(QTextDocument::ImageResource, QUrl(name));
  if (pixmap.loadFromData(bytes.toByteArray())) {
    QPixmapCache::insert(name, pixmap);
  } else {
    undecodable_.insert(name);
  }
  return pixmap;
}

QSizeF PictureObject::intrinsicSize(QTextDocument* document, int, const QTextFormat& format) {
  const QTextImageFormat image = format.toImageFormat();
  const QPaintDevice* device = document->documentLayout()->paintDevice();
  const double scale = device != nullptr ? device->logicalDpiY() / kPixelsPerInch : 1.0;
  return QSizeF(std::max(1.0, image.width()), std::max(1.0, image.height())) * scale;
}

void PictureObject::drawObject(QPainter* painter, const QRectF& place, QTextDocument* document, int,
                               const QTextFormat& format) {
  const QPixmap pixmap = PixmapOf(*document, format.toImageFormat().name());
  painter->save();
  if (pixmap.isNull()) {
    DrawPlaceholder(*painter, place);
  } else {
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawPixmap(place, pixmap, QRectF(pixmap.rect()));
  }
  painter->restore();
}

}  // namespace quorvane
