#include "stats/error_plots.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "base/number_format.h"

namespace quorvane {

namespace {

// One colour a level, from the innermost.
ChartColor LevelColor(std::size_t k) {
  constexpr std::array<ChartColor, 4> kColors = {0x2C8A2C, 0x0070D0, 0x902090, 0x808080};
  return kColors[k % kColors.size()];
}

std::string LevelText(double level) {
  return FormatNumber(level, "##.0#") + " %";
}

// How far from the value a side is worth showing.
double ReachOf(const ParameterErrors& errors) {
  constexpr double kErrors = 6.0;
  double reach = kErrors * errors.error;
  for (const ProfileLimits& limits : errors.profile->limits) {
    for (const SideLimit* side : {&limits.lower, &limits.upper}) {
      if (side->HasLimit()) reach = std::max(reach, 1.05 * std::fabs(side->limit - errors.value));
    }
  }
  return reach > 0.0 ? reach : std::numeric_limits<double>::infinity();
}

ChartSeries CurveOf(const ParameterErrors& errors) {
  ChartSeries curve{.name = "Sum of squares", .color = kChartBlack, .x = {}, .y = {}};
  const double reach = ReachOf(errors);
  for (const ProfilePoint& point : errors.profile->curve) {
    if (std::fabs(point.value - errors.value) > reach) continue;
    curve.x.push_back(point.value);
    curve.y.push_back(point.sum);
  }
  return curve;
}

// The same with places between the trials, so that it looks as smooth as it is: the signed root of
// the rise is nearly a straight line, and linear from trial to trial here.
ChartSeries SmoothOf(const ChartSeries& trials, double value, double least) {
  constexpr int kParts = 12;
  ChartSeries smooth{.name = trials.name, .color = trials.color, .x = {}, .y = {}};
  const auto root = [&](std::size_t k) {
    const double rise = std::sqrt(std::max(trials.y[k] - least, 0.0));
    return trials.x[k] < value ? -rise : rise;
  };
  for (std::size_t k = 0; k + 1 < trials.x.size(); ++k) {
    for (int part = 0; part < kParts; ++part) {
      const double share = static_cast<double>(part) / kParts;
      const double between = root(k) + share * (root(k + 1) - root(k));
      smooth.x.push_back(trials.x[k] + share * (trials.x[k + 1] - trials.x[k]));
      smooth.y.push_back(part == 0 ? trials.y[k] : least + between * between);
    }
  }
  if (trials.x.empty()) return smooth;
  smooth.x.push_back(trials.x.back());
  smooth.y.push_back(trials.y.back());
  return smooth;
}

// S (1 + ((v - value) / sd)^2 / NDF) over the range of the curve, no higher than it.
ChartSeries ParabolaOf(const ErrorAnalysis& analysis, const ParameterErrors& errors,
                       const ChartSeries& curve) {
  constexpr int kPoints = 121;
  ChartSeries parabola{.name = "Standard error", .color = kChartBlue, .x = {}, .y = {}};
  if (!(errors.error > 0.0)) return parabola;
  const double low = curve.x.front();
  const double high = curve.x.back();
  const double top = *std::max_element(curve.y.begin(), curve.y.end());
  for (int k = 0; k < kPoints; ++k) {
    const double v = low + (high - low) * k / (kPoints - 1);
    const double errorsOff = (v - errors.value) / errors.error;
    const double sum = analysis.sum * (1.0 + errorsOff * errorsOff / analysis.freedom);
    if (sum > top) continue;
    parabola.x.push_back(v);
    parabola.y.push_back(sum);
  }
  return parabola;
}

// Stairs over even classes.
ChartSeries StairsOf(const std::vector<double>& values) {
  constexpr double kMostClasses = 60.0;
  ChartSeries stairs{.name = "Replicates", .x = {}, .y = {}};
  const auto ends = std::minmax_element(values.begin(), values.end());
  const double low = *ends.first;
  const double high = *ends.second;
  const double root = std::sqrt(static_cast<double>(values.size()));
  const auto classes = static_cast<std::size_t>(std::clamp(root, 1.0, kMostClasses));
  const double width = (high - low) / static_cast<double>(classes);
  std::vector<double> counts(classes, 0.0);
  for (const double value : values) {
    const double place = width > 0.0 ? (value - low) / width : 0.0;
    counts[std::min(classes - 1, static_cast<std::size_t>(place))] += 1.0;
  }
  const auto corner = [&](std::size_t edge, double count) {
    stairs.x.push_back(low + width * static_cast<double>(edge));
    stairs.y.push_back(count);
  };
  corner(0, 0.0);
  for (std::size_t k = 0; k < classes; ++k) {
    corner(k, counts[k]);
    corner(k + 1, counts[k]);
  }
  corner(classes, 0.0);
  return stairs;
}

// Light to dark towards the fit; readable in print.
ChartColor RegionColor(std::size_t k) {
  constexpr std::array<ChartColor, 4> kColors = {0xC47A2A, 0xE0B48A, 0xEFD9C6, 0xF7EEE6};
  return kColors[std::min(k, kColors.size() - 1)];
}

// Where the quadratic form of the covariance is (ratio - 1) NDF, which is 2 F(2, NDF).
ChartSeries EllipseOf(const ErrorAnalysis& analysis, const ErrorSurface& surface, double ratio) {
  constexpr int kPoints = 180;
  ChartSeries ellipse{.name = {}, .color = kChartBlue, .x = {}, .y = {}};
  if (!(surface.xError > 0.0 && surface.yError > 0.0)) return ellipse;
  const double correlation =
      std::clamp(surface.covariance / (surface.xError * surface.yError), -1.0, 1.0);
  const double radius = std::sqrt((ratio - 1.0) * analysis.freedom);
  for (int k = 0; k <= kPoints; ++k) {
    const double angle = 2.0 * std::numbers::pi * k / kPoints;
    const double u = radius * std::cos(angle);
    const double v = radius * std::sin(angle);
    const double across = correlation * u + std::sqrt(1.0 - correlation * correlation) * v;
    const double x = analysis.values(surface.x) + surface.xError * u;
    const double y = analysis.values(surface.y) + surface.yError * across;
    const bool inside = x >= surface.xs.front() && x <= surface.xs.back() &&
                        y >= surface.ys.front() && y <= surface.ys.back();
    const double gap = std::numeric_limits<double>::quiet_NaN();
    ellipse.x.push_back(inside ? x : gap);
    ellipse.y.push_back(inside ? y : gap);
  }
  return ellipse;
}

}  // namespace

Chart PlotProfile(const ErrorAnalysis& analysis, const ParameterErrors& errors) {
  ChartPanel panel{.leftTitle = "Sum of squares", .series = {}, .marks = {}, .legend = true};
  const ChartSeries curve = CurveOf(errors);
  ChartSeries trials = curve;
  trials.name.clear();
  trials.style = SeriesStyle::kDot;
  panel.series = {SmoothOf(curve, errors.value, analysis.sum), std::move(trials),
                  ParabolaOf(analysis, errors, curve)};
  for (std::size_t k = 0; k < errors.profile->limits.size(); ++k) {
    const ProfileLimits& limits = errors.profile->limits[k];
    const double sum = limits.ratio * analysis.sum;
    panel.series.push_back({.name = LevelText(limits.level),
                            .color = LevelColor(k),
                            .x = {curve.x.front(), curve.x.back()},
                            .y = {sum, sum}});
    for (const SideLimit* side : {&limits.lower, &limits.upper}) {
      if (side->HasLimit()) panel.marks.push_back({side->limit, LevelColor(k), ""});
    }
  }
  return {.title = "Profile of " + errors.name, .bottomTitle = errors.name, .panels = {panel}};
}

Chart PlotReplicates(const ParameterErrors& errors, const ParameterReplicates& replicates,
                     const std::string& title) {
  ChartPanel panel{.leftTitle = "Replicates", .series = {}, .marks = {}};
  if (!replicates.values.empty()) {
    panel.series.push_back(StairsOf(replicates.values));
    panel.marks.push_back({errors.value, kChartBlack, "fit"});
  }
  for (std::size_t k = 0; k < replicates.limits.size(); ++k) {
    const PercentileLimits& limits = replicates.limits[k];
    panel.marks.push_back({limits.lower, LevelColor(k), LevelText(limits.level)});
    panel.marks.push_back({limits.upper, LevelColor(k), LevelText(limits.level)});
  }
  return {.title = title + ": " + errors.name, .bottomTitle = errors.name, .panels = {panel}};
}

Chart PlotSurface(const ErrorAnalysis& analysis, const ErrorSurface& surface) {
  ChartPanel panel{.leftTitle = surface.yName, .series = {}, .marks = {}, .legend = true};
  ChartMap map{.x = surface.xs, .y = surface.ys, .heights = surface.sums, .bands = {}};
  for (std::size_t k = 0; k < surface.ratios.size(); ++k) {
    const auto& [level, ratio] = surface.ratios[k];
    map.bands.push_back({ratio * analysis.sum, RegionColor(k)});
    // Only a name for the legend: the map itself has none.
    panel.series.push_back({.name = LevelText(level),
                            .style = SeriesStyle::kRectangle,
                            .color = RegionColor(k),
                            .x = {},
                            .y = {}});
    panel.series.push_back(EllipseOf(analysis, surface, ratio));
    if (k == 0) panel.series.back().name = "Covariance";
  }
  std::sort(map.bands.begin(), map.bands.end(),
            [](const ChartMap::Band& a, const ChartMap::Band& b) { return a.below < b.below; });
  panel.series.push_back({.name = "Fit",
                          .style = SeriesStyle::kCross,
                          .color = kChartBlack,
                          .x = {analysis.values(surface.x)},
                          .y = {analysis.values(surface.y)}});
  panel.map = std::move(map);
  return {.title = "Sum of squares over " + surface.xName + " and " + surface.yName,
          .bottomTitle = surface.xName,
          .panels = {panel}};
}

}  // namespace quorvane
