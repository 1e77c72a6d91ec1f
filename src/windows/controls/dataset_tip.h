// What a tool tip tells of a dataset whose name is cut or has no room.
#pragma once

#include <QString>
#include <QTextDocument>

#include "scan/dataset.h"

namespace quorvane {

// The whole name, and below it the file that it came from.
inline QString DatasetTip(const Dataset& dataset) {
  QString text = QString::fromStdString(NameOf(dataset));
  const QString path = QString::fromStdString(PathOf(dataset));
  if (!path.isEmpty()) text += '\n' + path;
  return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

}  // namespace quorvane
