#include "sim/sim_chart.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {

namespace {

struct SeriesLook {
  SeriesStyle style;
  ChartColor color;
};

// By position.
constexpr std::array<SeriesLook, 6> kLooks = {{
    {SeriesStyle::kRectangle, kChartBlack},
    {SeriesStyle::kDiagonalCross, kChartBlue},
    {SeriesStyle::kTriangle, 0x00FF00},
    {SeriesStyle::kRectangle, kChartRed},
    {SeriesStyle::kDownTriangle, 0x008000},
    {SeriesStyle::kRectangle, 0x800000},
}};

// A species in the chart: its name and what its column is multiplied by to be a signal.
struct SpeciesCurve {
  std::string_view name;
  double factor;
};

std::vector<SpeciesCurve> CurvesOf(const SimInputs& inputs) {
  const SimModel& model = SimModelOf(inputs.model);
  const double EA = NumberIn(inputs, SimBox::kExtCoeff);
  std::vector<SpeciesCurve> curves;
  for (const SimModelSpecies& species : model.species) {
    double factor = 1.0;  // with a second component the columns are signals
    if (!model.secondComponent) {
      factor = EA;
      if (species.a == SimDegree::kNmer) factor = NumberIn(inputs, SimBox::kN1mer) * EA;
      if (species.a == SimDegree::kMmer) factor = NumberIn(inputs, SimBox::kN2mer) * EA;
    }
    curves.push_back({species.name, factor});
  }
  return curves;
}

// `value(i)` against radius for the first `count` grid points.
template <class Value>
void AddSeries(ChartPanel& panel, const SimColumn& column, int count, std::string_view name,
               Value&& value) {
  const SeriesLook look = kLooks[panel.series.size()];
  ChartSeries series = {std::string(name), look.style, look.color, {}, {}};
  for (int i = 0; i < count; ++i) {
    series.x.push_back(column.r[i]);
    series.y.push_back(value(i));
  }
  panel.series.push_back(std::move(series));
}

}  // namespace

bool SimGraphEnabled(int model, SimGraph graph) {
  switch (graph) {
    case SimGraph::kTotalSignal:
      return true;
    case SimGraph::kTotalConc:
      return SimModelOf(model).TotalConcentration();
    case SimGraph::kSpeciesSignal:
      return !SimModelOf(model).species.empty();
    case SimGraph::kSpeciesConc:
      break;
  }
  return false;
}

Chart SimChart(const Simulator& simulator, SimGraph graph) {
  if (!SimGraphEnabled(simulator.Inputs.model, graph)) {
    throw std::invalid_argument("the model does not offer this graph");
  }
  const SimColumn& column = simulator.Column;
  const int n = simulator.GridPoints;
  ChartPanel panel;
  panel.leftTitle = graph == SimGraph::kTotalConc ? "concentration" : "signal";
  if (graph == SimGraph::kTotalSignal) {
    AddSeries(panel, column, simulator.WrittenPoints, "total",
              [&](int i) { return column.signal[i]; });
  } else if (graph == SimGraph::kTotalConc) {
    AddSeries(panel, column, n, "total", [&](int i) { return column.conc[i]; });
  } else {
    const std::vector<SpeciesCurve> curves = CurvesOf(simulator.Inputs);
    for (std::size_t k = 0; k < curves.size(); ++k) {
      AddSeries(panel, column, n, curves[k].name,
                [&](int i) { return column.species[i][k] * curves[k].factor; });
    }
    panel.legend = true;
  }
  const std::vector<double>& first = panel.series[0].y;
  if (graph != SimGraph::kSpeciesSignal && !first.empty()) {
    panel.leftPattern = SimAxisPattern(first.back());
  }
  const std::string title(SimGraphCaptions[static_cast<std::size_t>(graph)]);
  return {title, "Radius (cm)", {std::move(panel)}};
}

std::string_view SimAxisPattern(double lastValue) {
  const double size = std::fabs(lastValue);
  return size > 1000.0 || size < 0.01 ? "0.00E+00" : "#,##0.00";
}

}  // namespace quorvane
