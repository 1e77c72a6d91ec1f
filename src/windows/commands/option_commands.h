// The commands of the Options and Graphs menus that ask for a value or change a display.
#pragma once

#include <QObject>

#include "core/page/constants.h"
#include "windows/session/window_set.h"

namespace quorvane {

class OptionCommands : public QObject {
  Q_OBJECT
 public:
  explicit OptionCommands(WindowSet windows, QObject* parent = nullptr);

  // The entry box of a constant; an accepted value is shown at once.
  void AskConstant(Constant constant);

  // Constants from sequence and buffer.
  void OpenSolution();

  void SetKFormat(KDisplay display);
  void SetBuoyant(bool buoyant);  // display of molecular weights
  void SetAlwaysFitToRest(bool on);
  void ChooseColor(bool deleted);  // of deleted, else of good points
  void ExportGraphs();
  void DeleteGraphs();

 signals:
  // Menus must follow.
  void Changed();
  void ConstantsChanged();  // vbar, density, critical coefficient, tolerance

 private:
  WindowSet windows_;
};

}  // namespace quorvane
