// Deleting and restoring points of a Dataset, and its meniscus and base. A deleted point keeps its
// data: Err turns negative and Good false.
#pragma once

#include <limits>

#include "scan/dataset.h"

namespace quorvane {

// A rectangle in axis values: radius in cm against signal, bounds inside.
struct EditRectangle {
  double x1 = -std::numeric_limits<double>::infinity();
  double y1 = -std::numeric_limits<double>::infinity();
  double x2 = std::numeric_limits<double>::infinity();
  double y2 = std::numeric_limits<double>::infinity();
};

// Delete or restore the points inside or outside a rectangle, then set RefRadius anew.
void DeleteInside(Dataset& dataset, const EditRectangle& rectangle);
void DeleteOutside(Dataset& dataset, const EditRectangle& rectangle);
void RestoreInside(Dataset& dataset, const EditRectangle& rectangle);
void RestoreOutside(Dataset& dataset, const EditRectangle& rectangle);

// Restores every point, then sets RefRadius anew.
void RestoreAll(Dataset& dataset);

// Takes the two radii (cm) as meniscus and base, in rising order. No point changes.
void SetMeniscusAndBase(Dataset& dataset, double meniscus, double base);

}  // namespace quorvane
