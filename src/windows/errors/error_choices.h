// What an error analysis is to find out: the left side of frmErrorAnalysis.
#pragma once

#include <QWidget>
#include <optional>

#include "stats/error_analysis.h"

class QCheckBox;
class QComboBox;
class QLayout;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSpinBox;

namespace quorvane {

struct Session;

class ErrorChoices : public QWidget {
  Q_OBJECT
 public:
  explicit ErrorChoices(Session& session, QWidget* parent = nullptr);

  // Lists the fitted parameters of `fit`, the shared ones checked. What was chosen for a fit of the
  // same parameters stays.
  void ShowFit(const FitState& fit);

  // What is chosen. Nothing, with a message, if that cannot be analysed.
  std::optional<ErrorRequest> Request();

 private:
  QWidget* BuildParameters();
  QWidget* BuildLevels();
  QWidget* BuildMethods();
  QWidget* BuildSurface();
  void ConnectSignals();
  void Check(bool shared, bool perDataset);
  void Refuse(const QString& text, QWidget& box);
  bool ReadLevels(ErrorRequest& request);
  bool ReadSurface(ErrorRequest& request);

  Session& session_;
  QListWidget* lisErrorParameters_;
  QPushButton* cmdErrorShared_;
  QPushButton* cmdErrorAll_;
  QPushButton* cmdErrorNone_;
  QLineEdit* txtErrorLevels_;
  QCheckBox* chkProfile_;
  QCheckBox* chkMonteCarlo_;
  QCheckBox* chkBootstrap_;
  QSpinBox* spnReplicates_;
  QSpinBox* spnErrorSeed_;
  QCheckBox* chkSurface_;
  QComboBox* cmbSurfaceX_;
  QComboBox* cmbSurfaceY_;
  QSpinBox* spnSurfacePoints_;
};

}  // namespace quorvane
