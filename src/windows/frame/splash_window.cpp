#include "windows/frame/splash_window.h"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>

#include "core/program_state.h"
#include "windows/frame/app_icon.h"

namespace quorvane {

namespace {

constexpr QSize kSize(420, 170);

void WriteLine(QPainter& painter, const QRect& place, int pixels, bool bold, const QString& text) {
  QFont font = painter.font();
  font.setPixelSize(pixels);
  font.setBold(bold);
  painter.setFont(font);
  painter.drawText(place, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text);
}

QPixmap Draw() {
  const double ratio = qGuiApp->devicePixelRatio();
  QPixmap pixmap(kSize * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::white);
  QPainter painter(&pixmap);
  painter.setPen(QColor(0, 90, 140));
  painter.drawRect(QRect(QPoint(), kSize).adjusted(0, 0, -1, -1));
  painter.drawPixmap(QRect(28, 37, 96, 96), AppIcon().pixmap(QSize(96, 96), ratio));
  WriteLine(painter, {152, 36, 250, 44}, 34, true, QStringLiteral("Quorvane"));
  painter.setPen(QColor(50, 50, 50));
  WriteLine(painter, {152, 82, 250, 20}, 15, false,
            QObject::tr("Version %1").arg(QString::fromLatin1(ProgramVersion())));
  WriteLine(painter, {152, 106, 250, 40}, 13, false,
            QObject::tr("Analysis of sedimentation-equilibrium experiments"));
  return pixmap;
}

}  // namespace

SplashWindow::SplashWindow() : QSplashScreen(Draw()) {
  setObjectName("frmSplash");
}

}  // namespace quorvane
