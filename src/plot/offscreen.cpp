#include "plot/offscreen.h"

#include <QApplication>
#include <QLocale>
#include <array>
#include <clocale>
#include <cstdio>

namespace quorvane {

namespace {

// Keeps remarks about a missing desktop session, true of every batch job, from standard error. Qt
// ends the program by itself after a fatal message.
void PrintSevereOnly(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtCriticalMsg || type == QtFatalMsg) {
    std::fprintf(stderr, "%s\n", qPrintable(text));
  }
}

}  // namespace

// QApplication keeps references to its arguments, so these stand before it and outlive it.
struct OffscreenDrawing::Application {
  std::array<char, 9> name{"quorvane"};
  std::array<char*, 2> arguments{name.data(), nullptr};
  int count = 1;
  QApplication application{count, arguments.data()};
};

OffscreenDrawing::OffscreenDrawing() {
  if (QCoreApplication::instance() == nullptr) {
#if !defined(Q_OS_WIN)  // it draws in memory without that, and off screen it has no fonts
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    const QtMessageHandler usual = qInstallMessageHandler(PrintSevereOnly);
    application_ = std::make_unique<Application>();
    qInstallMessageHandler(usual);
  }
  // QApplication takes over the user's locale, and with it a decimal comma.
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
}

OffscreenDrawing::~OffscreenDrawing() = default;

}  // namespace quorvane
