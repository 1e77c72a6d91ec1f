// A figure for a paper as a plain value: data, curves and residuals in cells that stand side by
// side. The engine makes Figures; plot/ shows and writes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/chart.h"

namespace quorvane {

// Marks that have an inside, so that points left out can be drawn hollow.
enum class FigureSymbol : std::uint8_t {
  kCircle,
  kSquare,
  kTriangle,
  kDiamond,
  kDownTriangle,
  kStar,
  kLeftTriangle,
  kRightTriangle
};
inline constexpr std::size_t kFigureSymbols = 8;

enum class FigureStroke : std::uint8_t { kSolid, kDashed, kDotted, kDashDot };
inline constexpr std::size_t kFigureStrokes = 4;

struct FigureLook {
  ChartColor color = kChartBlack;
  FigureSymbol symbol = FigureSymbol::kCircle;
  FigureStroke stroke = FigureStroke::kSolid;
  bool operator==(const FigureLook&) const = default;
};

struct FigurePoints {
  std::vector<double> x;  // in units of the bottom axis
  std::vector<double> y;  // as many as x
  void Add(double atX, double atY) {
    x.push_back(atX);
    y.push_back(atY);
  }
  bool operator==(const FigurePoints&) const = default;
};

// A part of a curve: one species of several.
struct FigureSpecies {
  std::string name;
  FigureStroke stroke = FigureStroke::kDashed;  // thin, in the colour of the dataset
  FigurePoints curve = {};                      // by rising x
  bool operator==(const FigureSpecies&) const = default;
};

// One dataset.
struct FigureSeries {
  std::string name;
  std::size_t number = 0;  // of the dataset, from 0
  FigureLook look = {};
  FigurePoints data = {};
  FigurePoints leftOut = {};    // drawn hollow
  FigurePoints curve = {};      // by rising x; empty without a fit
  FigurePoints residuals = {};  // in units of the residual axis
  std::vector<FigureSpecies> species = {};
  bool operator==(const FigureSeries&) const = default;
};

// A data panel with its residual panel below; both share the bottom axis.
struct FigureCell {
  std::string title;
  std::vector<FigureSeries> series;
  std::vector<FigurePoints> guides = {};  // thin grey lines behind the data
  std::optional<ChartArea> view = {};     // of the data panel; absent: all points
  bool operator==(const FigureCell&) const = default;
};

// One entry of the legend.
struct FigureKey {
  FigureLook look;
  bool symbol = true;
  bool line = true;
  std::string text;
  bool thin = false;  // the line is that of a species
  bool operator==(const FigureKey&) const = default;
};

// On paper, in millimetres, each side from 30 to 500.
struct FigureSize {
  double width = 175.0;
  double height = 120.0;
  bool operator==(const FigureSize&) const = default;
};
inline constexpr double kLeastFigureSide = 30.0;
inline constexpr double kGreatestFigureSide = 500.0;
inline constexpr double kFigureColumnWidth = 85.0;  // one column of a journal
inline constexpr double kFigurePageWidth = 175.0;   // a page

struct Figure {
  std::string title;
  std::string bottomTitle;    // of all cells
  std::string leftTitle;      // of all data panels
  std::string residualTitle;  // of all residual panels
  std::vector<FigureCell> cells;
  bool residuals = false;      // whether there are residual panels
  double residualReach = 1.0;  // their left axes all go from -reach to reach, with some to spare
  std::vector<FigureKey> keys;
  std::vector<std::string> remarks;   // what the figure leaves out, for its maker
  std::vector<std::string> texts;     // what stands in it automatically and may be replaced
  double width = kFigurePageWidth;    // on paper, mm
  std::optional<double> height = {};  // mm; absent: what suits
  bool operator==(const Figure&) const = default;
};

// Where HTML goes with a figure to whoever lays it out, an image of this source stands for it.
inline constexpr const char* kFigureImage = "figure";

// The points of a figure as a Chart, for a table of its numbers: a panel a cell with the name of
// the cell, of each dataset the series "...: data", "left out", "curve", "residuals" that it has,
// then its species by their names.
Chart NumbersOf(const Figure& figure);

}  // namespace quorvane
