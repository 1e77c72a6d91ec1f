#include "scan/point_edits.h"

#include <algorithm>
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

bool IsInside(const RadiusSpan& span, double radius) {
  return span.low <= radius && radius <= span.high;
}

// Whether point k is in use once `span` is kept; until then `before` was, if anything.
bool IsKept(const Dataset& dataset, std::size_t k, const RadiusSpan& span,
            const std::optional<RadiusSpan>& before) {
  if (!IsInside(span, dataset.R[k])) return false;
  const bool comesBack = !before || !IsInside(*before, dataset.R[k]);
  return comesBack || dataset.Good[k] != kFalse;
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

std::optional<RadiusSpan> KeptRange(const Dataset& dataset) {
  std::optional<RadiusSpan> kept;
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    if (dataset.Good[k] == kFalse) continue;
    if (!kept) kept = {dataset.R[k], dataset.R[k]};
    kept->low = std::min(kept->low, dataset.R[k]);
    kept->high = std::max(kept->high, dataset.R[k]);
  }
  return kept;
}

void KeepRange(Dataset& dataset, const RadiusSpan& span) {
  const std::optional<RadiusSpan> before = KeptRange(dataset);
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    const bool kept = IsKept(dataset, k, span, before);
    dataset.Good[k] = kept ? kTrue : kFalse;
    dataset.Err[k] = std::copysign(dataset.Err[k], kept ? 1.0 : -1.0);
  }
  dataset.RefRadius = CalcRefRadius(dataset);
}

int CountKept(const Dataset& dataset, const RadiusSpan& span) {
  const std::optional<RadiusSpan> before = KeptRange(dataset);
  int count = 0;
  for (std::size_t k = 0; k < static_cast<std::size_t>(dataset.NumPoints); ++k) {
    count += IsKept(dataset, k, span, before) ? 1 : 0;
  }
  return count;
}

void SetMeniscusAndBase(Dataset& dataset, double meniscus, double base) {
  dataset.Rmen = meniscus;
  dataset.Rbase = base;
  if (dataset.Rbase < dataset.Rmen) std::swap(dataset.Rbase, dataset.Rmen);
}

}  // namespace quorvane
