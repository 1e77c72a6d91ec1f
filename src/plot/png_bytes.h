// An image as the bytes of a PNG file.
#pragma once

#include <QBuffer>
#include <QImage>
#include <cmath>
#include <stdexcept>

namespace quorvane {

// `dotsPerMeter` is the resolution that the file states. Throws std::runtime_error.
inline QByteArray PngBytes(QImage image, double dotsPerMeter) {
  image.setDotsPerMeterX(static_cast<int>(std::lround(dotsPerMeter)));
  image.setDotsPerMeterY(static_cast<int>(std::lround(dotsPerMeter)));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG")) {
    throw std::runtime_error("the picture cannot be encoded as PNG");
  }
  return bytes;
}

}  // namespace quorvane
