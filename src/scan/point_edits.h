// Deleting and restoring points of a Dataset, and its meniscus and base. A deleted point keeps its
// data: Err turns negative and Good false.
#pragma once

#include <limits>
#include <optional>

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

// A range of radii, cm, bounds inside.
struct RadiusSpan {
  double low = 0.0;
  double high = 0.0;
  bool operator==(const RadiusSpan&) const = default;
};

// The radii of the first and of the last point in use; none without such a point.
std::optional<RadiusSpan> KeptRange(const Dataset& dataset);

// Makes `span` the range that is kept, then sets RefRadius anew: points outside are deleted, those
// that it takes in beyond KeptRange come back. What was deleted inside KeptRange stays deleted.
void KeepRange(Dataset& dataset, const RadiusSpan& span);

// Points that KeepRange would leave in use.
int CountKept(const Dataset& dataset, const RadiusSpan& span);

// Restores every point, then sets RefRadius anew.
void RestoreAll(Dataset& dataset);

// Takes the two radii (cm) as meniscus and base, in rising order. No point changes.
void SetMeniscusAndBase(Dataset& dataset, double meniscus, double base);

}  // namespace quorvane
