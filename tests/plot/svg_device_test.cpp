// Faults caught here: clipping lost, kept for too long, or moved by a transformation.
#include "plot/svg_device.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QPainter>
#include <functional>

#include "svg_reading.h"

namespace {

QByteArray Painted(const std::function<void(QPainter&)>& paint) {
  SvgDevice device(QSize(300, 200), QStringLiteral("a < b"));
  QPainter painter(&device);
  paint(painter);
  painter.end();
  return device.Document();
}

}  // namespace

TEST(SvgDevice, ClipsWhatIsPaintedUnderAClipOnly) {
  const SvgFile file = ReadSvg(Painted([](QPainter& painter) {
    painter.save();
    painter.setClipRect(10, 20, 30, 40);
    painter.drawLine(0, 0, 300, 200);
    painter.restore();
    painter.drawLine(0, 0, 5, 5);
    painter.scale(2, 2);
    painter.setClipRect(50, 50, 10, 10);  // 100, 100, 20, 20 of the picture
    painter.drawLine(0, 0, 300, 200);
  }));
  ASSERT_EQ(file.error, QString());
  ASSERT_EQ(file.elements.size(), 3u);
  EXPECT_EQ(file.clips[file.elements[0].clip], QRectF(10, 20, 30, 40));
  EXPECT_EQ(file.elements[1].clip, QString());
  EXPECT_EQ(file.clips[file.elements[2].clip], QRectF(100, 100, 20, 20));
}
