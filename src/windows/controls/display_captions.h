// The entries by which the form of association constants and molecular weights is chosen: in the
// menu "Fitting" and in the menus of the parameter page.
#pragma once

#include <QObject>
#include <QString>

#include "base/k_display.h"

namespace quorvane {

inline QString CaptionOf(KDisplay display) {
  switch (display) {
    case KDisplay::kLn:
      return QObject::tr("Display ln(K)s");
    case KDisplay::kLog10:
      return QObject::tr("Display Log10(K)s");
    case KDisplay::kPlain:
      break;
  }
  return QObject::tr("Display K");
}

inline QString WeightCaption(bool buoyant) {
  return buoyant ? QObject::tr("Display Buoyant MW") : QObject::tr("Display MW");
}

}  // namespace quorvane
