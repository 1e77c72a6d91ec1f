#include "scan/point_edits.h"

#include <cmath>
#include <utility>

#include "scan/cell_geometry.h"

namespace quorvane {

namespace {

enum class Action { kDelete, kRestore };
enum class Side { kInside, kOutside };

void Edit(Dataset& dataset, const EditRectangle& rectangle, Side side, Action action) {
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    const double x = dataset.R[k];
    const double y = dataset.C[k];
    const bool inside =
        rectangle.x1 <= x && x <= rectangle.x2 && rectangle.y1 <= y && y <= rectangle.y2;
    if (inside != (side == Side::kInside)) continue;
    const double magnitude = std::fabs(dataset.Err[k]);
    dataset.Err[k] = action == Action::kDelete ? -magnitude : magnitude;
    dataset.Good[k] = action == Action::kDelete ? kFalse : kTrue;
  }
  dataset.RefRadius = CalcRefRadius(dataset);
}

}  // namespace

void DeleteInside(Dataset& dataset, const EditRectangle& rectangle) {
  Edit(dataset, rectangle, Side::kInside, Action::kDelete);
}

void DeleteOutside(Dataset& dataset, const EditRectangle& rectangle) {
  Edit(dataset, rectangle, Side::kOutside, Action::kDelete);
}

void RestoreInside(Dataset& dataset, const EditRectangle& rectangle) {
  Edit(dataset, rectangle, Side::kInside, Action::kRestore);
}

void RestoreOutside(Dataset& dataset, const EditRectangle& rectangle) {
  Edit(dataset, rectangle, Side::kOutside, Action::kRestore);
}

void RestoreAll(Dataset& dataset) {
  RestoreInside(dataset, EditRectangle{});
}

void SetMeniscusAndBase(Dataset& dataset, double meniscus, double base) {
  dataset.Rmen = meniscus;
  dataset.Rbase = base;
  if (dataset.Rbase < dataset.Rmen) std::swap(dataset.Rbase, dataset.Rmen);
}

}  // namespace quorvane
