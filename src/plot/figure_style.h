// The measures of figures, in quarters of a point. For the sources of plot/ only.
#pragma once

namespace quorvane {

constexpr int kFigureLabel = 28;  // letters of 7 points: ticks and legend
constexpr int kFigureTitle = 32;  // 8 points: axes and cells
constexpr int kFigureHead = 36;   // 9 points: the figure
constexpr int kFigureLeast = 24;  // 6 points, to which a long title shrinks

constexpr double kFigureAxisWidth = 2.0;
constexpr double kFigureMarkWidth = 1.6;
constexpr double kFigureCurveWidth = 3.4;
constexpr double kFigureSpeciesWidth = 2.2;
constexpr double kFigureMark = 9.0;
constexpr double kFigureManyMark = 7.0;  // where there are many points
constexpr double kFigureResidualMark = 6.5;
constexpr double kFigureKeyMark = 13.0;

}  // namespace quorvane
