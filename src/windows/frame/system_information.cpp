#include "windows/frame/system_information.h"

#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QSysInfo>
#include <QThread>

#include "base/environment.h"
#include "base/files.h"
#include "core/program_state.h"

namespace quorvane {

namespace {

// The name that the system gives to the processor, or else its architecture.
QString ProcessorName() {
  QFile info(QStringLiteral("/proc/cpuinfo"));
  if (info.open(QIODevice::ReadOnly | QIODevice::Text)) {
    const QStringList lines = QString::fromUtf8(info.readAll()).split('\n');
    for (const QString& line : lines) {
      if (line.startsWith(QStringLiteral("model name"))) return line.section(':', 1).trimmed();
    }
  }
  const std::string named = Environment("PROCESSOR_IDENTIFIER");  // Windows
  return named.empty() ? QSysInfo::currentCpuArchitecture() : QString::fromStdString(named);
}

QString ScreenText(const QScreen& screen) {
  const QSize size = screen.size();
  return QObject::tr("%1 x %2, scale %3, %4 dots per inch")
      .arg(size.width())
      .arg(size.height())
      .arg(screen.devicePixelRatio())
      .arg(screen.logicalDotsPerInch());
}

QString BuildText() {
  QString text = QStringLiteral(QUORVANE_BUILD_TYPE);
#if defined(__clang__)
  text += QStringLiteral(", Clang " __clang_version__);
#elif defined(__GNUC__)
  text += QStringLiteral(", GCC " __VERSION__);
#endif
  return text + ", " + QSysInfo::buildAbi();
}

}  // namespace

QString SystemInformation(const std::filesystem::path& settingsFile) {
  QStringList lines = {
      QObject::tr("Program: Quorvane %1").arg(QString::fromLatin1(ProgramVersion())),
      QObject::tr("System: %1").arg(QSysInfo::prettyProductName()),
      QObject::tr("Kernel: %1 %2").arg(QSysInfo::kernelType(), QSysInfo::kernelVersion()),
      QObject::tr("Processor: %1").arg(ProcessorName()),
      QObject::tr("Cores: %1").arg(QThread::idealThreadCount()),
      QObject::tr("Qt: %1, platform %2")
          .arg(QString::fromLatin1(qVersion()), QGuiApplication::platformName())};
  for (const QScreen* screen : QGuiApplication::screens()) {
    lines << QObject::tr("Screen: %1").arg(ScreenText(*screen));
  }
  lines << QObject::tr("Settings: %1").arg(QString::fromStdString(PathText(settingsFile)))
        << QObject::tr("Build: %1").arg(BuildText());
  return lines.join('\n');
}

}  // namespace quorvane
