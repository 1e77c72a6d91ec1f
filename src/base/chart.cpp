#include "base/chart.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace {

constexpr std::uint32_t kMagic = 0x48435651;  // "QVCH"
constexpr std::uint32_t kVersion = 1;

class ByteWriter {
 public:
  void Integer(std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) bytes_.push_back(std::byte(value >> shift & 0xFF));
  }
  void Double(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    Integer(static_cast<std::uint32_t>(bits));
    Integer(static_cast<std::uint32_t>(bits >> 32));
  }
  void Text(const std::string& text) {
    Integer(static_cast<std::uint32_t>(text.size()));
    for (const char c : text) bytes_.push_back(std::byte(c));
  }
  void Doubles(const std::vector<double>& values) {
    Integer(static_cast<std::uint32_t>(values.size()));
    for (const double value : values) Double(value);
  }
  std::vector<std::byte> Take() { return std::move(bytes_); }

 private:
  std::vector<std::byte> bytes_;
};

class ByteReader {
 public:
  explicit ByteReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  std::uint32_t Integer(const char* what) {
    Need(4, what);
    std::uint32_t value = 0;
    for (int shift = 0; shift < 32; shift += 8) {
      value |= std::to_integer<std::uint32_t>(bytes_[at_++]) << shift;
    }
    return value;
  }
  double Double(const char* what) {
    const std::uint64_t low = Integer(what);
    const std::uint64_t high = Integer(what);
    return std::bit_cast<double>(low | high << 32);
  }
  // A count of things that take at least `size` bytes each.
  std::uint32_t Count(std::size_t size, const char* what) {
    const std::uint32_t count = Integer(what);
    if (count > (bytes_.size() - at_) / size) Fail(what);
    return count;
  }
  std::string Text(const char* what) {
    std::string text(Count(1, what), '\0');
    for (char& c : text) c = static_cast<char>(bytes_[at_++]);
    return text;
  }
  std::vector<double> Doubles(const char* what) {
    std::vector<double> values(Count(8, what));
    for (double& value : values) value = Double(what);
    return values;
  }
  [[noreturn]] void Fail(const char* what) const {
    throw std::runtime_error("chart bytes: bad " + std::string(what) + " at byte " +
                             std::to_string(at_));
  }
  bool AtEnd() const { return at_ == bytes_.size(); }

 private:
  void Need(std::size_t count, const char* what) const {
    if (bytes_.size() - at_ < count) Fail(what);
  }
  std::span<const std::byte> bytes_;
  std::size_t at_ = 0;
};

void WriteSeries(ByteWriter& out, const ChartSeries& series) {
  out.Text(series.name);
  out.Integer(static_cast<std::uint32_t>(series.style));
  out.Integer(series.color);
  out.Doubles(series.x);
  out.Doubles(series.y);
}

ChartSeries ReadSeries(ByteReader& in) {
  ChartSeries series;
  series.name = in.Text("series name");
  const std::uint32_t style = in.Integer("series style");
  if (style > static_cast<std::uint32_t>(SeriesStyle::kDot)) in.Fail("series style");
  series.style = static_cast<SeriesStyle>(style);
  series.color = in.Integer("series colour");
  series.x = in.Doubles("series abscissas");
  series.y = in.Doubles("series ordinates");
  if (series.x.size() != series.y.size()) in.Fail("series ordinates");
  return series;
}

ChartPanel ReadPanel(ByteReader& in) {
  constexpr std::size_t kLeastSeries = 20;  // an empty name, style, colour and two counts
  constexpr std::size_t kLeastMark = 16;
  ChartPanel panel;
  panel.leftTitle = in.Text("axis title");
  panel.heightShare = in.Double("panel height");
  if (!(panel.heightShare > 0.0) || !std::isfinite(panel.heightShare)) in.Fail("panel height");
  panel.series.resize(in.Count(kLeastSeries, "series count"));
  for (ChartSeries& series : panel.series) series = ReadSeries(in);
  panel.marks.resize(in.Count(kLeastMark, "mark count"));
  for (ChartMark& mark : panel.marks) {
    mark.x = in.Double("mark");
    mark.color = in.Integer("mark colour");
    mark.text = in.Text("mark text");
  }
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
  out.Integer(kMagic);
  out.Integer(kVersion);
  out.Text(chart.title);
  out.Text(chart.bottomTitle);
  out.Integer(static_cast<std::uint32_t>(chart.panels.size()));
  for (const ChartPanel& panel : chart.panels) {
    out.Text(panel.leftTitle);
    out.Double(panel.heightShare);
    out.Integer(static_cast<std::uint32_t>(panel.series.size()));
    for (const ChartSeries& series : panel.series) WriteSeries(out, series);
    out.Integer(static_cast<std::uint32_t>(panel.marks.size()));
    for (const ChartMark& mark : panel.marks) {
      out.Double(mark.x);
      out.Integer(mark.color);
      out.Text(mark.text);
    }
  }
  return out.Take();
}

Chart ParseChart(std::span<const std::byte> bytes) {
  constexpr std::size_t kLeastPanel = 20;  // an empty title, the height and two counts
  ByteReader in(bytes);
  if (in.Integer("magic word") != kMagic) in.Fail("magic word");
  if (in.Integer("version") != kVersion) in.Fail("version");
  Chart chart;
  chart.title = in.Text("title");
  chart.bottomTitle = in.Text("bottom axis title");
  chart.panels.resize(in.Count(kLeastPanel, "panel count"));
  for (ChartPanel& panel : chart.panels) panel = ReadPanel(in);
  if (!in.AtEnd()) in.Fail("end");
  return chart;
}
