// Where the frame stands on the screens, from one session to the next.
#pragma once

#include <QList>
#include <QRect>

class QMainWindow;

namespace quorvane {

class Host;
class SettingsStore;

// Of `screens`, the first of them the desktop's own, the one that holds `corner`; else the nearest.
QRect ScreenOf(QPoint corner, const QList<QRect>& screens);

// `frame` within `screen`: made smaller if it does not fit, then moved no farther than it must.
QRect WithinScreen(QRect frame, const QRect& screen);

// The first frame of a user: its corner at `least`'s, if that is on the screen, and as large as
// `wanted` or `least`, whichever is more, as far as the screen reaches.
QRect FirstFrame(const QRect& least, QSize wanted, const QRect& screen);

// Places the frame as it was left, or for the first time so that two children find room side by
// side.
void RestorePlace(QMainWindow& frame, const SettingsStore& settings);

// Keeps the place; that of a minimised frame is not worth it.
void SavePlace(const QMainWindow& frame, SettingsStore& settings, Host& host);

int ToPixels(float twips);

}  // namespace quorvane
