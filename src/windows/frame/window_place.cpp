#include "windows/frame/window_place.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>
#include <QStyle>
#include <algorithm>

#include "core/settings/settings.h"

namespace quorvane {

namespace {

// 15 at 96 logical pixels an inch.
double TwipsPerPixel() {
  constexpr double kTwipsPerInch = 1440.0;
  return kTwipsPerInch / QGuiApplication::primaryScreen()->logicalDotsPerInch();
}

float ToTwips(int pixels) {
  return static_cast<float>(pixels * TwipsPerPixel());
}

// Along both axes together; 0 inside.
int Distance(QPoint point, const QRect& screen) {
  const auto outside = [](int at, int low, int high) { return std::max({low - at, at - high, 0}); };
  return outside(point.x(), screen.left(), screen.right()) +
         outside(point.y(), screen.top(), screen.bottom());
}

QList<QRect> Screens() {
  QList<QRect> places;
  for (const QScreen* screen : QGuiApplication::screens()) {
    const bool own = screen == QGuiApplication::primaryScreen();
    places.insert(own ? 0 : places.size(), screen->availableGeometry());
  }
  return places;
}

// Title and borders, which the desktop adds once the frame is shown.
QSize Chrome(const QWidget& frame) {
  const int border = frame.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
  return {2 * border, frame.style()->pixelMetric(QStyle::PM_TitleBarHeight) + border};
}

}  // namespace

int ToPixels(float twips) {
  constexpr double kMost = 1.0e6;
  return static_cast<int>(std::clamp(static_cast<double>(twips) / TwipsPerPixel(), -kMost, kMost));
}

QRect ScreenOf(QPoint corner, const QList<QRect>& screens) {
  return *std::min_element(screens.begin(), screens.end(), [&](const QRect& a, const QRect& b) {
    return Distance(corner, a) < Distance(corner, b);
  });
}

QRect WithinScreen(QRect frame, const QRect& screen) {
  frame.setSize(frame.size().boundedTo(screen.size()));
  const QSize spare = screen.size() - frame.size();
  frame.moveTo(std::clamp(frame.x(), screen.x(), screen.x() + spare.width()),
               std::clamp(frame.y(), screen.y(), screen.y() + spare.height()));
  return frame;
}

QRect FirstFrame(const QRect& least, QSize wanted, const QRect& screen) {
  const QPoint corner = screen.contains(least.topLeft()) ? least.topLeft() : screen.topLeft();
  return QRect(corner, least.size().expandedTo(wanted)).intersected(screen);
}

// Place and size as Qt counts them: the corner of the frame with its title, the size without.
void RestorePlace(QMainWindow& frame, const SettingsStore& settings) {
  const WindowPlace place = LoadWindowPlace(settings);
  const QSize chrome = Chrome(frame);
  QRect outer(QPoint(ToPixels(place.MainLeft), ToPixels(place.MainTop)),
              QSize(ToPixels(place.MainWidth), ToPixels(place.MainHeight)) + chrome);
  const QRect screen = ScreenOf(outer.topLeft(), Screens());
  if (settings.Get("Settings", "MainWidth")) {
    outer = WithinScreen(outer, screen);
  } else {
    const QFontMetrics metrics = frame.fontMetrics();
    const QSize sideBySide(metrics.averageCharWidth() * 230, metrics.height() * 50);
    outer = FirstFrame(outer, sideBySide + chrome, screen);
  }
  frame.move(outer.topLeft());
  frame.resize(outer.size() - chrome);
}

void SavePlace(const QMainWindow& frame, SettingsStore& settings, Host& host) {
  if (frame.isMinimized()) return;
  // A maximised frame is known without its title.
  const QPoint title = frame.geometry().topLeft() - frame.pos();
  const bool whole = frame.isMaximized() || frame.isFullScreen();
  const QPoint corner = whole ? frame.normalGeometry().topLeft() - title : frame.pos();
  const QSize size = whole ? frame.normalGeometry().size() : frame.size();
  SaveWindowPlace(
      {ToTwips(corner.x()), ToTwips(corner.y()), ToTwips(size.width()), ToTwips(size.height())},
      settings, host);
}

}  // namespace quorvane
