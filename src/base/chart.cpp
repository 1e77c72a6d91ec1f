#include "base/chart.h"

#include <cmath>

#include "base/byte_stream.h"

namespace quorvane {

namespace {

constexpr std::uint32_t kMagic = 0x48435651;  // "QVCH"
constexpr std::uint32_t kVersion = 2;
constexpr std::uint32_t kVersionWithoutLegend = 1;  // has no pattern of the left axis either

void WriteText(ByteWriter& out, const std::string& text) {
  out.Unsigned32(static_cast<std::uint32_t>(text.size()));
  out.Raw(text);
}

void WriteDoubles(ByteWriter& out, const std::vector<double>& values) {
  out.Unsigned32(static_cast<std::uint32_t>(values.size()));
  out.Doubles(values);
}

std::string ReadText(ByteReader& in, const char* what) {
  return std::string(TextOf(in.Raw(in.Count(1, what), what)));
}

std::vector<double> ReadDoubles(ByteReader& in, const char* what) {
  std::vector<double> values(in.Count(sizeof(double), what));
  in.Doubles(values, what);
  return values;
}

void WriteSeries(ByteWriter& out, const ChartSeries& series) {
  WriteText(out, series.name);
  out.Unsigned32(static_cast<std::uint32_t>(series.style));
  out.Unsigned32(series.color);
  WriteDoubles(out, series.x);
  WriteDoubles(out, series.y);
}

ChartSeries ReadSeries(ByteReader& in) {
  ChartSeries series;
  series.name = ReadText(in, "series name");
  const std::uint32_t style = in.Unsigned32("series style");
  if (style > static_cast<std::uint32_t>(SeriesStyle::kDownTriangle)) in.Fail("series style");
  series.style = static_cast<SeriesStyle>(style);
  series.color = in.Unsigned32("series colour");
  series.x = ReadDoubles(in, "series abscissas");
  series.y = ReadDoubles(in, "series ordinates");
  if (series.x.size() != series.y.size()) in.Fail("series ordinates");
  return series;
}

ChartPanel ReadPanel(ByteReader& in, std::uint32_t version) {
  constexpr std::size_t kLeastSeries = 20;  // an empty name, style, colour and two counts
  constexpr std::size_t kLeastMark = 16;
  constexpr std::size_t kLongestPattern = 32;
  ChartPanel panel;
  panel.leftTitle = ReadText(in, "axis title");
  panel.heightShare = in.Double("panel height");
  if (!(panel.heightShare > 0.0) || !std::isfinite(panel.heightShare)) in.Fail("panel height");
  panel.series.resize(in.Count(kLeastSeries, "series count"));
  for (ChartSeries& series : panel.series) series = ReadSeries(in);
  panel.marks.resize(in.Count(kLeastMark, "mark count"));
  for (ChartMark& mark : panel.marks) {
    mark.x = in.Double("mark");
    mark.color = in.Unsigned32("mark colour");
    mark.text = ReadText(in, "mark text");
  }
  if (version == kVersionWithoutLegend) return panel;
  panel.leftPattern = ReadText(in, "axis pattern");
  if (panel.leftPattern.size() > kLongestPattern) in.Fail("axis pattern");
  const std::uint32_t legend = in.Unsigned32("legend");
  if (legend > 1) in.Fail("legend");
  panel.legend = legend == 1;
  return panel;
}

}  // namespace

void ChartRange::Include(std::span<const double> values) {
  for (const double value : values) {
    if (!std::isfinite(value)) continue;
    if (value < low) low = value;
    if (value > high) high = value;
  }
}

std::vector<std::byte> SerializeChart(const Chart& chart) {
  ByteWriter out;
  out.Unsigned32(kMagic);
  out.Unsigned32(kVersion);
  WriteText(out, chart.title);
  WriteText(out, chart.bottomTitle);
  out.Unsigned32(static_cast<std::uint32_t>(chart.panels.size()));
  for (const ChartPanel& panel : chart.panels) {
    WriteText(out, panel.leftTitle);
    out.Double(panel.heightShare);
    out.Unsigned32(static_cast<std::uint32_t>(panel.series.size()));
    for (const ChartSeries& series : panel.series) WriteSeries(out, series);
    out.Unsigned32(static_cast<std::uint32_t>(panel.marks.size()));
    for (const ChartMark& mark : panel.marks) {
      out.Double(mark.x);
      out.Unsigned32(mark.color);
      WriteText(out, mark.text);
    }
    WriteText(out, panel.leftPattern);
    out.Unsigned32(panel.legend ? 1 : 0);
  }
  return out.Take();
}

Chart ParseChart(std::span<const std::byte> bytes) {
  constexpr std::size_t kLeastPanel = 20;  // an empty title, the height and two counts
  ByteReader in("chart bytes", bytes);
  if (in.Unsigned32("magic word") != kMagic) in.Fail("magic word");
  const std::uint32_t version = in.Unsigned32("version");
  if (version != kVersion && version != kVersionWithoutLegend) in.Fail("version");
  Chart chart;
  chart.title = ReadText(in, "title");
  chart.bottomTitle = ReadText(in, "bottom axis title");
  chart.panels.resize(in.Count(kLeastPanel, "panel count"));
  for (ChartPanel& panel : chart.panels) panel = ReadPanel(in, version);
  if (!in.AtEnd()) in.Fail("end");
  return chart;
}

}  // namespace quorvane
