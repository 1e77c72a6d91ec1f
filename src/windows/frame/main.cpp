// quorvane: the window program.
#include <QApplication>
#include <QLocale>
#include <QScreen>
#include <QTimer>
#include <chrono>
#include <clocale>

#include "core/page/cell_files.h"
#include "core/screen_check.h"
#include "core/settings/settings.h"
#include "core/settings/user_folder.h"
#include "windows/commands/experiment_commands.h"
#include "windows/controls/check_style.h"
#include "windows/frame/main_window.h"
#include "windows/frame/qt_dialogs.h"
#include "windows/frame/splash_window.h"

using namespace quorvane;

namespace {

std::optional<std::string> RefusalOfScreen() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QSizeF pixels = QSizeF(screen->size()) * screen->devicePixelRatio();
  return ScreenRefusal({static_cast<int>(pixels.width()), static_cast<int>(pixels.height()),
                        screen->logicalDotsPerInchX(), screen->logicalDotsPerInchY()});
}

// Cell geometries of the installation. False, with a box, if their file is malformed.
bool LoadGeometries(Session& session) {
  try {
    LoadChannelFile(session.Module, FindChannelFile(session.ProgramFolder));
  } catch (const FileFault& fault) {
    session.Ask.ShowMessage(nullptr, {}, QString::fromUtf8(fault.what()), MessageIcon::kStop);
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
  QApplication::setStyle(new CheckStyle);
  QApplication::setApplicationName(QStringLiteral("Quorvane"));
  QGuiApplication::setDesktopFileName(QStringLiteral("org.quorvane.Quorvane"));
  QtDialogs dialogs;
  if (const std::optional<std::string> refusal = RefusalOfScreen()) {
    dialogs.ShowMessage(nullptr, QObject::tr("Screen Resolution Problem"),
                        QString::fromStdString(*refusal), MessageIcon::kExclamation);
    return 1;
  }
  IniSettings settings(SettingsFile());
  Session session(settings, dialogs, ToPath(QCoreApplication::applicationDirPath()));
  session.LockArchives = true;
  LoadSettings(session.Module, settings);
  session.CurrentFolder = LoadLastDirectory(settings, session.ProgramFolder);
  if (!LoadGeometries(session)) return 1;
  SplashWindow splash;
  splash.show();
  QCoreApplication::processEvents();
  MainWindow window(session);
  window.show();
  splash.close();
  const QString argument = QApplication::arguments().mid(1).join(' ');
  QTimer::singleShot(0, &window, [&] {
    constexpr std::chrono::seconds kInterval(30);
    window.KeepUnsavedWork(DataFolder() / "unsaved", kInterval);
    window.Experiments().OpenArgument(argument);
  });
  return QApplication::exec();
}
