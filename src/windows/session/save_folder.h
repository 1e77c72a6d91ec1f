// Where a dialog that saves begins.
#pragma once

#include <QString>

namespace quorvane {

// `folder` if files can be written there, otherwise the documents of the user: an experiment may
// have been opened from a folder that is read-only, as the installed examples are.
QString SaveFolder(const QString& folder);

}  // namespace quorvane
