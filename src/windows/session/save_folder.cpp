#include "windows/session/save_folder.h"

#include <QFileInfo>
#include <QStandardPaths>

namespace quorvane {

QString SaveFolder(const QString& folder) {
  const QFileInfo place(folder);
  if (place.isDir() && place.isWritable()) return folder;
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

}  // namespace quorvane
