// Sizes of exported pictures as their users think of them: pixels on a screen, millimetres on
// paper.
#pragma once

#include "plot/chart_export.h"

namespace quorvane {

struct ExportUnit {
  const char* suffix;   // " px" or " mm"
  double pictureUnits;  // of a PictureSize in one of this
  int least;            // both sides, in this unit
  int greatest;
  PictureSize standard;  // in this unit
};

// The unit in which the size of a picture of that format is given.
const ExportUnit& UnitOf(PictureFormat format);

// `size`, in the unit of `format`, as RenderChart wants it.
PictureSize ToPictureSize(PictureFormat format, PictureSize size);

// The height to a width, and the reverse, in the proportion of `shape`; within the unit's limits.
int HeightFor(int width, PictureSize shape, const ExportUnit& unit);
int WidthFor(int height, PictureSize shape, const ExportUnit& unit);

}  // namespace quorvane
