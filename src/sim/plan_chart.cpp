#include "sim/plan_chart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "fit/figure_words.h"
#include "fit/fit_figure.h"
#include "sim/sim_boxes.h"

namespace quorvane {

namespace {

constexpr ChartColor kLost = 0xA0A0A0;
constexpr double kMicro = 1e-6;

ChartSeries Line(std::string name, ChartColor color) {
  ChartSeries series;
  series.name = std::move(name);
  series.color = color;
  return series;
}

// The points of a scan that are good, or those that are lost with their good neighbour.
ChartSeries Part(const PlannedScan& scan, bool good, ChartColor color) {
  ChartSeries series = Line("", color);
  for (std::size_t k = 0; k < scan.r.size(); ++k) {
    const bool joins = !good && k + 1 < scan.r.size() && !scan.good[k + 1];
    if (scan.good[k] != good && !joins) continue;
    series.x.push_back(scan.r[k]);
    series.y.push_back(scan.signal[k]);
  }
  return series;
}

double ScaleOf(const PlanAxis& axis) {
  return axis.kind == PlanAxis::Kind::kSpeed ? 1.0 : kMicro;
}

double ValueOf(const ExperimentPlan& plan, const PlanAxis& axis) {
  if (axis.kind == PlanAxis::Kind::kSpeed) return plan.speeds[axis.place];
  return (axis.kind == PlanAxis::Kind::kLoad ? plan.loads : plan.loadsB)[axis.place];
}

// "speed 2", "load 2", "load 2 of B".
std::string PlaceText(const ExperimentPlan& plan, const PlanAxis& axis) {
  const std::string number = " " + std::to_string(axis.place + 1);
  if (axis.kind == PlanAxis::Kind::kSpeed) return "speed" + number;
  if (axis.kind == PlanAxis::Kind::kLoad) {
    return "load" + number + (plan.TwoComponents() ? " of A" : "");
  }
  return plan.loadsB.size() == 1 ? "load of B" : "load" + number + " of B";
}

// From 0 to a few times the least error, beyond which curves only run off.
void SetRange(ChartPanel& panel) {
  constexpr double kTimesLeast = 6.0;
  const std::vector<double>& y = panel.series.front().y;
  if (y.empty()) return;
  const auto [least, most] = std::minmax_element(y.begin(), y.end());
  panel.leftRange = {0.0, 1.05 * std::min(*most, kTimesLeast * *least)};
}

}  // namespace

Chart ScansOfPlan(const ExperimentPlan& plan, const PlanResult& result) {
  Chart chart = {.title = "Planned scans", .bottomTitle = "radius, cm", .panels = {}};
  ChartPanel panel = {.leftTitle = "signal", .series = {}, .marks = {}, .legend = true};
  ChartRange shown;
  for (const PlannedScan& scan : result.scans) {
    const auto speed = std::find(result.speeds.begin(), result.speeds.end(), scan.speed);
    const auto number = static_cast<std::size_t>(speed - result.speeds.begin());
    ChartSeries good = Part(scan, true, FigureLookOf(number).color);
    const bool first = scan.column == 0 && scan.wavelength == 0;
    if (first) good.name = SpeedText(static_cast<int>(scan.speed));
    shown.Include(good.y);
    panel.series.push_back(std::move(good));
    if (scan.points < plan.points) panel.series.push_back(Part(scan, false, kLost));
  }
  if (std::isfinite(plan.mostSignal) && !result.scans.empty()) {
    ChartSeries limit = Line("limit of the detector", kChartRed);
    ChartRange radii;
    for (const PlannedScan& scan : result.scans) radii.Include(scan.r);
    limit.x = {radii.low, radii.high};
    limit.y = {plan.mostSignal, plan.mostSignal};
    if (shown.high > 0.5 * plan.mostSignal || shown.Empty()) {
      shown.Include(limit.y);
      panel.series.push_back(std::move(limit));
    }
  }
  if (!shown.Empty()) panel.leftRange = {0.0, 1.1 * shown.high};
  chart.panels.push_back(std::move(panel));
  return chart;
}

std::vector<PlanAxis> AxesOf(const ExperimentPlan& plan) {
  std::vector<PlanAxis> axes;
  if (Chooses(plan)) return axes;
  const auto add = [&axes](PlanAxis::Kind kind, std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) axes.push_back({kind, k});
  };
  add(PlanAxis::Kind::kSpeed, plan.speeds.size());
  add(PlanAxis::Kind::kLoad, plan.loads.size());
  add(PlanAxis::Kind::kLoadB, plan.loadsB.size());
  return axes;
}

std::string NameOf(const ExperimentPlan& plan, const PlanAxis& axis) {
  const double value = ValueOf(plan, axis);
  std::array<char, 32> micromolar{};
  std::snprintf(micromolar.data(), micromolar.size(), "%.4g micromolar", value / kMicro);
  const bool speed = axis.kind == PlanAxis::Kind::kSpeed;
  return PlaceText(plan, axis) + " (" +
         (speed ? SpeedText(static_cast<int>(value)) : micromolar.data()) + ")";
}

std::vector<double> ValuesAlong(const ExperimentPlan& plan, const PlanAxis& axis, int count) {
  constexpr double kTimes = 3.0;
  const double planned = ValueOf(plan, axis);
  const bool speed = axis.kind == PlanAxis::Kind::kSpeed;
  const Bounds& bounds = InfoOf(speed ? SimBox::kSpeed : SimBox::kLoadC).bounds;
  const double low = std::max(bounds.low, planned / kTimes);
  const double high = std::min(bounds.high, planned * kTimes);
  std::vector<double> values;
  for (int k = 0; k < count; ++k) {
    const double value = low + (high - low) * k / (count - 1);
    values.push_back(speed ? std::round(value) : value);
  }
  return values;
}

Chart ErrorsOfPlan(const ExperimentPlan& plan, const PlanAxis& axis,
                   const std::vector<double>& values,
                   const std::vector<std::vector<std::optional<double>>>& errors) {
  const bool speed = axis.kind == PlanAxis::Kind::kSpeed;
  Chart chart = {.title = "Expected standard errors along " + NameOf(plan, axis),
                 .bottomTitle = PlaceText(plan, axis) + (speed ? ", rpm" : ", micromolar"),
                 .panels = {}};
  const std::vector<const ModelParameter*> parameters = plan.Fitted();
  for (std::size_t p = 0; p < parameters.size(); ++p) {
    const double truth = plan.truth.*parameters[p]->shared->field;
    const bool percent = ErrorIsRelative(*parameters[p]) && truth != 0.0;
    ChartPanel panel;
    panel.leftTitle = std::string(parameters[p]->shared->name) + (percent ? ", %" : "");
    ChartSeries series = Line("", FigureLookOf(0).color);
    for (std::size_t k = 0; k < errors.size(); ++k) {
      const std::optional<double>& error = errors[k][p];
      if (!error) continue;
      series.x.push_back(values[k] / ScaleOf(axis));
      series.y.push_back(percent ? 100.0 * *error / truth : *error);
    }
    panel.series.push_back(std::move(series));
    panel.marks.push_back(
        {.x = ValueOf(plan, axis) / ScaleOf(axis), .color = kLost, .text = p == 0 ? "plan" : ""});
    SetRange(panel);
    chart.panels.push_back(std::move(panel));
  }
  return chart;
}

}  // namespace quorvane
