#include "plot/chart_map.h"

#include <qcustomplot.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "plot/chart_color.h"

namespace quorvane {

namespace {

// So many cells a side are filled: the edge of a band looks smooth.
constexpr int kCells = 800;

// The number of the band, from 0; NaN where there is none.
double BandOf(const ChartMap& map, double height) {
  for (std::size_t k = 0; k < map.bands.size(); ++k) {
    if (height < map.bands[k].below) return static_cast<double>(k);
  }
  return std::numeric_limits<double>::quiet_NaN();
}

// One even colour a band.
QCPColorGradient ColorsOf(const ChartMap& map) {
  const auto count = static_cast<int>(map.bands.size());
  QCPColorGradient colors;
  colors.clearColorStops();
  colors.setLevelCount(count);
  for (int k = 0; k < count; ++k) {
    const double place = count > 1 ? static_cast<double>(k) / (count - 1) : 0.0;
    colors.setColorStopAt(place, ToQColor(map.bands[static_cast<std::size_t>(k)].color));
  }
  colors.setNanHandling(QCPColorGradient::nhTransparent);
  return colors;
}

// The weights of four places in a row, `t` of the way from the second to the third.
std::array<double, 4> CubicWeights(double t) {
  return {((-0.5 * t + 1.0) * t - 0.5) * t, (1.5 * t - 2.5) * t * t + 1.0,
          ((-1.5 * t + 2.0) * t + 0.5) * t, (0.5 * t - 0.5) * t * t};
}

// Inside the mesh whose lower corner is (ix, iy), with a place to spare on each side.
double Cubic(const ChartMap& map, std::size_t ix, std::size_t iy, double u, double v) {
  const std::array<double, 4> across = CubicWeights(u);
  const std::array<double, 4> up = CubicWeights(v);
  double height = 0.0;
  for (std::size_t j = 0; j < up.size(); ++j) {
    for (std::size_t i = 0; i < across.size(); ++i) {
      height += up[j] * across[i] * map.heights[iy + j - 1][ix + i - 1];
    }
  }
  return height;
}

}  // namespace

double HeightAt(const ChartMap& map, double x, double y) {
  const double lastX = static_cast<double>(map.x.size()) - 1.0;
  const double lastY = static_cast<double>(map.y.size()) - 1.0;
  if (!(x >= 0.0 && x <= lastX && y >= 0.0 && y <= lastY)) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const auto ix = static_cast<std::size_t>(std::min(x, lastX - 1.0));
  const auto iy = static_cast<std::size_t>(std::min(y, lastY - 1.0));
  const double u = x - static_cast<double>(ix);
  const double v = y - static_cast<double>(iy);
  const bool inside = ix > 0 && iy > 0 && ix + 2 < map.x.size() && iy + 2 < map.y.size();
  if (inside) {
    const double height = Cubic(map, ix, iy, u, v);
    if (std::isfinite(height)) return height;
  }
  const std::vector<double>& low = map.heights[iy];
  const std::vector<double>& high = map.heights[iy + 1];
  return (1.0 - v) * ((1.0 - u) * low[ix] + u * low[ix + 1]) +
         v * ((1.0 - u) * high[ix] + u * high[ix + 1]);
}

void DrawMap(QCPAxis& bottom, QCPAxis& left, const ChartMap& map) {
  if (map.x.size() < 2 || map.y.size() < 2 || map.bands.empty()) return;
  auto* cells = new QCPColorMap(&bottom, &left);
  cells->removeFromLegend();
  cells->setInterpolate(false);
  cells->setTightBoundary(true);
  QCPColorMapData* data = cells->data();
  data->setSize(kCells, kCells);
  data->setRange({map.x.front(), map.x.back()}, {map.y.front(), map.y.back()});
  const double stepX = (static_cast<double>(map.x.size()) - 1.0) / (kCells - 1);
  const double stepY = (static_cast<double>(map.y.size()) - 1.0) / (kCells - 1);
  for (int iy = 0; iy < kCells; ++iy) {
    for (int ix = 0; ix < kCells; ++ix) {
      data->setCell(ix, iy, BandOf(map, HeightAt(map, ix * stepX, iy * stepY)));
    }
  }
  cells->setGradient(ColorsOf(map));
  cells->setDataRange({0.0, std::max(1.0, static_cast<double>(map.bands.size()) - 1.0)});
}

}  // namespace quorvane
