// A paint device that writes SVG and, unlike Qt's own generator, keeps the painter's clipping.
#pragma once

#include <QByteArray>
#include <QPaintDevice>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <memory>

namespace quorvane {

class SvgEngine;

// Give it to one QPainter; when that has ended, Document() is the file. Same calls, same bytes.
// Covers what charts need: paths, lines, text as <text>, embedded images, transformations, solid
// pens and brushes (of other brushes only the colour), and rectangular clipping (of another clip
// its bounding rectangle).
class SvgDevice : public QPaintDevice {
 public:
  // `size` in user units; `title` is what viewers show as the picture's name. A unit is a CSS
  // pixel, or what makes the picture as large as `millimetres` on paper.
  explicit SvgDevice(QSize size, QString title = {}, QSizeF millimetres = {});
  ~SvgDevice() override;
  QPaintEngine* paintEngine() const override;
  QByteArray Document() const;

 protected:
  int metric(PaintDeviceMetric metric) const override;

 private:
  QSize size_;
  QString title_;
  QSizeF millimetres_;  // invalid: as `size_` says
  std::unique_ptr<SvgEngine> engine_;
};

}  // namespace quorvane
