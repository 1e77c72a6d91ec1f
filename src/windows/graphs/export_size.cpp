#include "windows/graphs/export_size.h"

#include <QtGlobal>
#include <algorithm>
#include <cmath>

namespace quorvane {

namespace {

constexpr double kPointsPerMillimetre = 72.0 / 25.4;

constexpr ExportUnit kPngUnit = {
    QT_TRANSLATE_NOOP("QObject", " px"), 1.0, 200, 10000, {1200, 1080}};
constexpr ExportUnit kSvgUnit = {QT_TRANSLATE_NOOP("QObject", " px"), 1.0, 200, 10000, {600, 540}};
constexpr ExportUnit kPdfUnit = {
    QT_TRANSLATE_NOOP("QObject", " mm"), kPointsPerMillimetre, 71, 3527, {200, 180}};

int Scaled(int side, int from, int to, const ExportUnit& unit) {
  const double scaled = static_cast<double>(side) * to / from;
  return static_cast<int>(std::clamp(std::lround(scaled), long{unit.least}, long{unit.greatest}));
}

}  // namespace

const ExportUnit& UnitOf(PictureFormat format) {
  if (format == PictureFormat::kPdf) return kPdfUnit;
  return format == PictureFormat::kSvg ? kSvgUnit : kPngUnit;
}

PictureSize ToPictureSize(PictureFormat format, PictureSize size) {
  const double factor = UnitOf(format).pictureUnits;
  return {static_cast<int>(std::lround(size.width * factor)),
          static_cast<int>(std::lround(size.height * factor))};
}

int HeightFor(int width, PictureSize shape, const ExportUnit& unit) {
  return Scaled(width, shape.width, shape.height, unit);
}

int WidthFor(int height, PictureSize shape, const ExportUnit& unit) {
  return Scaled(height, shape.height, shape.width, unit);
}

}  // namespace quorvane
