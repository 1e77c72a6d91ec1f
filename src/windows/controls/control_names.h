// Names of controls, by which tests and accessibility tools find them.
#pragma once

#include <QObject>
#include <QString>

namespace quorvane {

// "txtLoadData(0)"
inline QString ElementName(const char* array, int index) {
  return QStringLiteral("%1(%2)").arg(QLatin1String(array)).arg(index);
}

// Names `control` and hands it back.
template <class Control>
Control* Named(Control* control, const QString& name) {
  control->setObjectName(name);
  return control;
}
template <class Control>
Control* Named(Control* control, const char* name) {
  return Named(control, QString::fromLatin1(name));
}

}  // namespace quorvane
