// The windows that commands work on; all are owned by the main window.
#pragma once

class QWidget;

namespace quorvane {

class DataWindow;
class GraphsWindow;
class LogWindow;
class WindowHost;
struct Session;

struct WindowSet {
  Session& session;
  WindowHost& host;
  LogWindow& log;
  DataWindow& data;
  GraphsWindow& graphs;
  QWidget& frame;  // boxes and dialogs stand on it
};

}  // namespace quorvane
