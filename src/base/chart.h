// A picture of data as a plain value. The engine makes Charts; plot/ shows and writes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorvane {

// A colour as 0x00BBGGRR: red in the lowest byte.
using ChartColor = std::uint32_t;

inline constexpr ChartColor kChartBlack = 0x000000;
inline constexpr ChartColor kChartRed = 0x0000FF;
inline constexpr ChartColor kChartBlue = 0xFF0000;

enum class SeriesStyle : std::uint8_t {
  kLine = 0,           // joined points, no marks
  kCross = 1,          // upright crosses, not joined
  kDiagonalCross = 2,  // diagonal crosses, not joined
  kDot = 3,            // filled discs, not joined
  kRectangle = 4,      // filled squares, not joined
  kTriangle = 5,       // filled triangles that point up, not joined
  kDownTriangle = 6,   // filled triangles that point down, not joined
};

struct ChartSeries {
  std::string name;  // for legends and tables; may be empty
  SeriesStyle style = SeriesStyle::kLine;
  ChartColor color = kChartBlack;
  std::vector<double> x;  // in units of the bottom axis
  std::vector<double> y;  // in units of the panel's left axis; as many as x
  bool operator==(const ChartSeries&) const = default;
};

// A vertical line through a panel at x, with a text beside it.
struct ChartMark {
  double x = 0.0;
  ChartColor color = kChartBlack;
  std::string text;
  bool operator==(const ChartMark&) const = default;
};

// Heights over an even grid of places, shown as filled bands. Never serialised.
struct ChartMap {
  struct Band {
    double below = 0.0;  // the heights that it fills, as far as no earlier band does
    ChartColor color = kChartBlack;
    bool operator==(const Band&) const = default;
  };
  std::vector<double> x;                     // rising, at least 2
  std::vector<double> y;                     // rising, at least 2
  std::vector<std::vector<double>> heights;  // [iy][ix]; not finite: nothing is filled there
  std::vector<Band> bands;                   // rising; above the last nothing is filled
  bool operator==(const ChartMap&) const = default;
};

// The least and the greatest finite value seen; low > high while none was.
struct ChartRange {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();
  bool Empty() const { return low > high; }
  void Include(std::span<const double> values);
  bool operator==(const ChartRange&) const = default;
};

// One pair of axes. Panels of a Chart stand one above the other and share the bottom axis.
struct ChartPanel {
  std::string leftTitle;
  double heightShare = 1.0;  // of the Chart's height, relative to the other panels; above 0
  std::vector<ChartSeries> series;
  std::vector<ChartMark> marks;
  // Pattern of the left axis' numbers (number_format.h), unless it shows two of them alike or one
  // very long; empty: as few digits as tell them apart. At most 32 characters.
  std::string leftPattern = {};
  bool legend = false;               // a list of the named series
  std::optional<ChartMap> map = {};  // behind the series
  ChartRange leftRange = {};         // shown on the left axis whatever the points; never serialised
  bool operator==(const ChartPanel&) const = default;
};

// A rectangle in axis values, x1 < x2 and y1 < y2.
struct ChartArea {
  double x1 = 0.0;  // in units of the bottom axis
  double y1 = 0.0;  // in units of the top panel's left axis
  double x2 = 0.0;
  double y2 = 0.0;
  bool operator==(const ChartArea&) const = default;
};

struct Chart {
  std::string title;
  std::string bottomTitle;
  std::vector<ChartPanel> panels;
  std::optional<ChartArea> view = {};  // of the top panel; absent: all points. Never serialised
  bool operator==(const Chart&) const = default;
};

// The bytes of a Chart: a magic word, a version, then lengths and values, little-endian.
std::vector<std::byte> SerializeChart(const Chart& chart);

// The Chart that SerializeChart turned into `bytes`.
// Throws ByteFault, saying what was wrong and at which byte, for anything else; every
// length is checked against the bytes that are left before memory is taken for it.
Chart ParseChart(std::span<const std::byte> bytes);

}  // namespace quorvane
