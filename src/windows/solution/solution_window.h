// frmSolution: vbar, density and extinction from the sequence of a protein and its buffer.
#pragma once

#include <QDialog>
#include <array>

#include "core/page/solution_use.h"
#include "windows/solution/component_model.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QTableView;

namespace quorvane {

class SequenceBox;
struct Session;

// What is entered goes into module.Solution at once; the constants of the session change by "Use"
// alone.
class SolutionWindow : public QDialog {
  Q_OBJECT
 public:
  explicit SolutionWindow(Session& session, QWidget* parent = nullptr);  // outlived by `session`

 signals:
  void Used();  // vbar, density or extinction coefficients have changed

 private:
  enum Line { kMass, kVbar, kExtinction, kDensity, kBuoyancy, kBuoyantMass, kWeight, kLines };

  void BuildWidgets();
  QGroupBox* BuildBuffer();
  QGroupBox* BuildConstants();
  QWidget* BuildUse();
  void ConnectSignals();
  void ShowEntry();
  void Find(const QString& text);
  void TakeTyped();
  void EditFirstFound();
  void Refuse(const QString& why);
  void Recompute();
  bool TakeEntry();
  bool TakeNumber(const QLineEdit& box, const QString& name, double lowest, double highest,
                  double& number);
  void ShowBuffer();
  void ShowConstants();
  void ShowWeights();
  void ShowRemarks();
  SolutionUse Chosen() const;
  void Use();

  Session& session_;
  SolutionConstants constants_;
  QString fault_;  // why there are no constants; empty if there are
  ComponentModel components_;
  SequenceBox* protein_;
  QLineEdit* txtFindComponent_;
  QTableView* gridComponents_;
  QLabel* lblBuffer_;
  QLineEdit* txtSolutionTemp_;
  QLineEdit* txtSolutionPath_;
  std::array<QLabel*, kLines> lines_{};
  QLabel* lblSolutionRemarks_;
  QCheckBox* chkUseVbar_;
  QComboBox* cmbUseComponent_;
  QCheckBox* chkUseDensity_;
  QCheckBox* chkUseExtinction_;
  QPushButton* cmdUseSolution_;
};

}  // namespace quorvane
